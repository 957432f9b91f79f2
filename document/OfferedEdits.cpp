#include "document/OfferedEdits.h"

#include "changes/CellDifferences.h"
#include "model/LittleEndian.h"

#include <cstdint>
#include <utility>

namespace {

constexpr std::uint64_t kCellsAtOnce = 4096; // between two looks at the progress

} // namespace

COfferedEdits::COfferedEdits(const CRecipeRows& rows, const CStoredCells& stored, FileType type,
                             std::shared_ptr<const CCellsCommand> command, Listed listed)
    : m_rows(rows),
      m_type(type),
      m_command(std::move(command)),
      m_listed(listed),
      m_judge(rows, stored, type)
{
}

Outcome COfferedEdits::WorkOut(CProgress& progress, std::vector<CellEdit>* edits)
{
    const std::uint64_t count = m_command->Cells().Count();
    std::uint64_t done = 0;
    return WithinMemory([&] {
        const bool isThrough = m_command->Cells().ForEach([&](CellPlace place) {
            Take(place, edits);
            return ++done % kCellsAtOnce != 0 || progress.Advance(done, count);
        });
        return isThrough ? Outcome::Done : Outcome::GivenUp;
    });
}

void COfferedEdits::Take(CellPlace place, std::vector<CellEdit>* edits)
{
    CellVerdict verdict = Judge(place);
    if (verdict.kind == CellVerdict::Kind::LeftAlone)
        return;
    const bool isRefused = verdict.kind == CellVerdict::Kind::Refused;
    ++(isRefused ? m_refusedCount : m_changeCount);
    if (isRefused || m_listed == Listed::All)
        m_places.push_back(place);
    if (!isRefused && edits != nullptr)
        edits->push_back({place, std::move(verdict.state)});
}

Outcome COfferedEdits::TakeEdits(CProgress& progress, std::vector<CellEdit>& edits) const
{
    return WithinMemory([&] {
        edits.reserve(m_changeCount);
        for (std::size_t i = 0; i < m_places.size(); ++i) {
            CellVerdict verdict = Judge(m_places[i]);
            if (verdict.kind == CellVerdict::Kind::Changes)
                edits.push_back({m_places[i], std::move(verdict.state)});
            if (i % kCellsAtOnce == 0 && !progress.Advance(i, m_places.size()))
                return Outcome::GivenUp;
        }
        return Outcome::Done;
    });
}

/// The rows may be others by now, and are not painted as they were for long.
ChangeRecord COfferedEdits::At(std::size_t index) const
{
    const CellPlace place = m_places[index];
    if (!m_rows.HasCell(place))
        return {};
    ChangeRecord record = PlaceRecord(m_rows, m_type, place);
    record.oldText = m_rows.Text(place.row, place.column);
    CellVerdict verdict = Judge(place);
    if (verdict.kind == CellVerdict::Kind::Refused)
        record.note = u"refused: " + verdict.reason;
    else
        record.newText = std::move(verdict.text);
    if (verdict.state.IsExact()) {
        record.oldWords = BytesOfWords(m_judge.WordsIn(place));
        record.newWords = BytesOfWords(verdict.state.Words());
    }
    return record;
}

ChangeHeader COfferedEdits::Header() const
{
    ChangeHeader header;
    header.type = m_type;
    return header;
}
