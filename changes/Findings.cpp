#include "changes/Findings.h"

#include "changes/TablePieces.h"
#include "files/CellComparison.h"
#include "model/StoredNumber.h"
#include "model/ValueLimits.h"
#include "model/ValueNames.h"
#include "text/EscapedText.h"
#include "text/MessageText.h"

#include <algorithm>
#include <array>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// In the order of FindingKind.
constexpr std::array<std::u16string_view, kFindingKinds> kKindWords{
    u"outside-limits",     u"past-end",     u"unreadable",   u"rewritten",
    u"control-characters", u"not-a-number", u"outside-range"};
static_assert(kKindWords.size() == static_cast<std::size_t>(FindingKind::OutsideRange) + 1);

bool HasControl(std::u16string_view text)
{
    return std::any_of(text.begin(), text.end(), [](char16_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); });
}

bool HoldsNumbers(const ColumnCoding& coding)
{
    return IsReal(coding.dataType) || IsDecimalInteger(coding.dataType) || IsHexadecimal(coding.dataType);
}

/// Finds in one piece of a table.
class CPieceCheck {
public:
    CPieceCheck(std::size_t table, const FileTable& layout, const CRowPieces& pieces, CFindingTaker& taker)
        : m_table(table),
          m_layout(layout),
          m_pieces(pieces),
          m_rows(pieces.Rows()),
          m_isTable(m_rows.Fields() != nullptr),
          m_stored(pieces.Stored()),
          m_comparison(m_rows, m_stored, false),
          m_taker(taker)
    {
    }

    CPieceTaker::Answer Check()
    {
        const std::int32_t count = RowsInFile(m_pieces);
        std::int32_t whole = count;
        if (whole > 0 && !IsWholeRow(m_pieces, whole - 1))
            --whole;
        m_comparison.Compare(0, count, m_changes);
        for (std::int32_t row = 0; row < count; ++row)
            if (!CheckRow(row, row < whole))
                return CPieceTaker::Answer::End;
        if (whole == m_rows.RowCount())
            return CPieceTaker::Answer::GoOn;
        return TakeEnd(whole, whole < count) ? CPieceTaker::Answer::NextTable : CPieceTaker::Answer::End;
    }

private:
    bool CheckRow(std::int32_t row, bool isWhole)
    {
        for (std::uint32_t column = 0; column < m_rows.Columns().size(); ++column) {
            const CellPlace place{row, column};
            const std::optional<ChangeReason> why = TakeChange(place);
            const bool isThere = isWhole || m_comparison.OldWords(place).size() == BytesOfCell(m_rows, place);
            if (isThere && !CheckCell(place, why))
                return false;
        }
        return true;
    }

    bool CheckCell(CellPlace place, std::optional<ChangeReason> why)
    {
        const ColumnCoding& coding = m_rows.Columns()[place.column];
        const std::u16string noNumber = NoNumberText(place, coding);
        if ((noNumber.empty() || IsInfinite(place, coding)) && !CheckLimits(place, coding))
            return false;
        if (why && !Take(FindingKind::Rewritten, place, RewrittenText(place, *why)))
            return false;
        if (coding.dataType == DataType::String && !CheckString(place))
            return false;
        if (!noNumber.empty())
            return Take(FindingKind::NotANumber, place, noNumber);
        return CheckRange(place, coding);
    }

    /// Why the cell is among those that a save would change. To be asked for all cells in their order.
    std::optional<ChangeReason> TakeChange(CellPlace place)
    {
        if (m_nextChange == m_changes.size() || m_changes[m_nextChange].place != place)
            return std::nullopt;
        return m_changes[m_nextChange++].why;
    }

    bool CheckLimits(CellPlace place, const ColumnCoding& coding)
    {
        const auto value = m_rows.OutsideLimits(place.row, place.column);
        if (!value)
            return true;
        return Take(FindingKind::OutsideLimits, place,
                    FillMessage(u"%s lies outside %s", {EscapedText(*value), LimitsText(coding)}));
    }

    bool CheckRange(CellPlace place, const ColumnCoding& coding)
    {
        if (!HasRange(*coding.notes))
            return true;
        const auto number = m_isTable ? NumberOfText(coding, m_rows.Text(place.row, place.column))
                                      : StoredNumber(coding, m_comparison.OldWords(place));
        if (!number || !IsOutsideRange(coding, *number))
            return true;
        return Take(FindingKind::OutsideRange, place,
                    FillMessage(u"%s %s", {NumberText(coding, *number), OutsideRangeText(*coding.notes)}));
    }

    bool CheckString(CellPlace place)
    {
        m_text.clear();
        m_rows.AppendText(place.row, place.column, m_text);
        if (!HasControl(m_text))
            return true;
        return Take(FindingKind::ControlCharacters, place,
                    FillMessage(u"the text holds a control character: %s", {EscapedText(m_text)}));
    }

    /// An infinity is no number, but lies on one side of the limits.
    bool IsInfinite(CellPlace place, const ColumnCoding& coding)
    {
        if (m_isTable || !IsReal(coding.dataType))
            return false;
        const NumberKind kind = KindOfNumber(coding, m_comparison.OldWords(place));
        return kind == NumberKind::Infinity || kind == NumberKind::MinusInfinity;
    }

    /// What is told of a value that should be a number and is none; empty for any other.
    std::u16string NoNumberText(CellPlace place, const ColumnCoding& coding)
    {
        if (m_isTable) {
            if (!HoldsNumbers(coding) || !m_stored.HasField(place))
                return {};
            const std::u16string text = m_rows.Text(place.row, place.column);
            return NumberOfText(coding, text) ? std::u16string()
                                              : FillMessage(u"\"%s\" is no number", {EscapedText(text)});
        }
        if (!IsReal(coding.dataType))
            return {};
        const auto words = m_comparison.OldWords(place);
        const NumberKind kind = KindOfNumber(coding, words);
        if (kind == NumberKind::Finite || kind == NumberKind::None)
            return {};
        return FillMessage(u"%s is no number", {StoredNumberText(coding, words)});
    }

    std::u16string RewrittenText(CellPlace place, ChangeReason why)
    {
        const std::u16string again = m_comparison.ReadAgain(place);
        return FillMessage(u"a save would store it as %s (%s)", {EscapedText(again), WordOf(why)});
    }

    bool TakeEnd(std::int32_t row, bool isBegun)
    {
        Finding finding;
        finding.kind = FindingKind::PastEnd;
        finding.table = m_table;
        finding.row = m_pieces.First() + row + 1;
        if (!m_isTable)
            finding.address = m_layout.layout.RowAddress(m_pieces.First() + row);
        finding.message = isBegun ? u"the file ends within this row" : u"the file ends before this row";
        return m_taker.Take(finding);
    }

    bool Take(FindingKind kind, CellPlace place, std::u16string message)
    {
        Finding finding;
        finding.kind = kind;
        finding.table = m_table;
        finding.row = m_pieces.First() + place.row + 1;
        finding.column = static_cast<std::int32_t>(place.column) + 2;
        finding.item = m_rows.Columns()[place.column].title;
        finding.text = m_rows.Text(place.row, place.column);
        if (!m_isTable) {
            finding.address = AddressOfCell(m_layout.layout, {m_pieces.First() + place.row, place.column});
            const auto words = m_comparison.OldWords(place);
            finding.words.assign(words.begin(), words.end());
        }
        finding.message = std::move(message);
        return m_taker.Take(finding);
    }

    const std::size_t m_table;
    const FileTable& m_layout;
    const CRowPieces& m_pieces;
    const CRecipeRows& m_rows;
    const bool m_isTable;
    const CStoredCells m_stored;
    CCellComparison m_comparison;
    CFindingTaker& m_taker;
    std::vector<PlannedChange> m_changes;
    std::size_t m_nextChange = 0;
    std::u16string m_text;
};

class CTableCheck final : public CPieceTaker {
public:
    explicit CTableCheck(CFindingTaker& taker) : m_taker(taker) {}

    Answer Take(std::size_t table, const FileTable& layout, const CRowPieces& rows) override
    {
        return CPieceCheck(table, layout, rows, m_taker).Check();
    }

private:
    CFindingTaker& m_taker;
};

} // namespace

std::u16string_view WordOf(FindingKind kind)
{
    return kKindWords[static_cast<std::size_t>(kind)];
}

bool IsError(FindingKind kind)
{
    switch (kind) {
    case FindingKind::OutsideLimits:
    case FindingKind::PastEnd:
    case FindingKind::Unreadable:
    case FindingKind::OutsideRange:
        return true;
    default:
        return false;
    }
}

Outcome FindIn(FileType type, const fs::path& path, std::span<const FileTable> tables, CFindingTaker& taker,
               CProgress& progress)
{
    CTableCheck check(taker);
    return WalkTables(type, path, tables, check, progress);
}
