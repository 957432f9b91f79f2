#include "changes/FileDifferences.h"

#include "changes/FieldDifferences.h"
#include "changes/TextDifferences.h"
#include "changes/ZoneDifferences.h"
#include "disk/Content.h"
#include "files/RecipeFile.h"
#include "files/RowPieces.h"
#include "text/PathText.h"

#include <algorithm>
#include <memory>
#include <utility>

namespace {

constexpr std::uint64_t kPagedEnd = std::uint64_t{1} << 32; // of logical addresses

/// Hands changes on, and remembers whether there were any.
class CCountingTaker final : public CChangeTaker {
public:
    explicit CCountingTaker(CChangeTaker& taker) : m_taker(taker) {}

    bool Take(const ChangeRecord& record) override
    {
        m_hasAny = true;
        return m_taker.Take(record);
    }

    bool HasAny() const { return m_hasAny; }

private:
    CChangeTaker& m_taker;
    bool m_hasAny = false;
};

class CNobody final : public CChangeTaker {
public:
    bool Take(const ChangeRecord&) override { return true; }
};

/// Whether the file can be read, and nothing in its pages is damaged.
bool IsSound(const ComparedFile& file)
{
    if (file.type == FileType::Csv)
        return CFile(file.path, CFile::Mode::Read).IsOpen();
    CFileWords words(file.type, file.path);
    return words.IsOpen() && words.IsSound(0, IsPaged(file.type) ? kPagedEnd : 0);
}

std::optional<std::int64_t> SizeOf(const ComparedFile& file)
{
    const auto bytes = LogicalBytes(file.type, file.path);
    return bytes ? std::optional(static_cast<std::int64_t>(*bytes)) : std::nullopt;
}

/// The side of a table in a file; `words` is null for a table of texts.
TableSide SideOf(const ComparedFile& file, const CRecipeRows& layout, CFileWords* words)
{
    if (words == nullptr)
        return {file.type, PiecesOfTexts(layout, file.path)};
    return {file.type, PiecesOfWords(file.type, layout, *words)};
}

/// Null for a table of texts.
std::unique_ptr<CFileWords> WordsOf(const ComparedFile& file)
{
    return file.type == FileType::Csv ? nullptr : std::make_unique<CFileWords>(file.type, file.path);
}

} // namespace

CFileDifferences::CFileDifferences(ComparedFile before, ComparedFile after, std::vector<FileTable> tables)
    : m_before(std::move(before)),
      m_after(std::move(after)),
      m_tables(std::move(tables))
{
    if ((m_before.type == FileType::Csv || m_after.type == FileType::Csv) && m_tables.size() > 1)
        m_tables.resize(1);
}

ChangeHeader CFileDifferences::Header() const
{
    ChangeHeader header;
    header.file = PathText(m_before.path.filename());
    if (AreOfOneType())
        header.type = m_before.type;
    header.bytes = SizeOf(m_before);
    header.newBytes = SizeOf(m_after);
    header.tables = NamesOf(m_tables);
    return header;
}

bool CFileDifferences::Fail(bool isFirst)
{
    m_unreadable = isFirst ? &m_before : &m_after;
    return false;
}

bool CFileDifferences::HandTo(CChangeTaker& taker, CProgress& progress)
{
    m_unreadable = nullptr;
    m_hasEnough = false;
    for (const ComparedFile* file : {&m_before, &m_after})
        if (!IsSound(*file))
            return Fail(file == &m_before);
    if (!AreOfOneType())
        return HandTexts(taker, progress);
    if (HaveSameContent(m_before.path, m_after.path))
        return true;
    CCountingTaker counting(taker);
    const bool isRead = m_before.type == FileType::Csv ? HandFields(counting, progress) : HandWords(counting, progress);
    if (!isRead || counting.HasAny() || m_hasEnough)
        return isRead;
    ChangeRecord form;
    form.why = ChangeReason::Form;
    taker.Take(form);
    return true;
}

bool CFileDifferences::HandFields(CChangeTaker& taker, CProgress& progress)
{
    const CRecipeRows none;
    const CRecipeRows& layout = m_tables.empty() ? none : m_tables.front().layout;
    const ZoneEnd end = CFieldDifferences(m_before.path, m_after.path, layout).HandTo(taker, progress);
    m_hasEnough = end == ZoneEnd::Enough;
    return end == ZoneEnd::NoBefore || end == ZoneEnd::NoAfter ? Fail(end == ZoneEnd::NoBefore) : true;
}

std::u16string CFileDifferences::WhyNoPatch(CProgress& progress)
{
    m_unreadable = nullptr;
    std::u16string reason = WhyNoPatch(m_before, m_after, progress);
    if (!reason.empty() || m_unreadable != nullptr || HaveSameContent(m_before.path, m_after.path))
        return reason;
    reason = WhyNoPatch(m_after, m_before, progress);
    return reason.empty() ? reason : u"it could not be taken back: " + reason;
}

/// In one direction.
std::u16string CFileDifferences::WhyNoPatch(const ComparedFile& from, const ComparedFile& to, CProgress& progress)
{
    const CRecipeRows none;
    CFieldDifferences differences(from.path, to.path, m_tables.empty() ? none : m_tables.front().layout);
    CNobody nobody;
    const ZoneEnd end = differences.HandTo(nobody, progress);
    if (end == ZoneEnd::NoBefore || end == ZoneEnd::NoAfter)
        m_unreadable = end == ZoneEnd::NoBefore ? &from : &to;
    return m_unreadable == nullptr && !HaveSameContent(from.path, to.path) ? differences.WhyNoPatch()
                                                                           : std::u16string();
}

bool CFileDifferences::HandWords(CChangeTaker& taker, CProgress& progress)
{
    CFileWords before(m_before.type, m_before.path);
    CFileWords after(m_after.type, m_after.path);
    const WordPair words{before, after, IsPaged(m_before.type)};
    for (const FileZone& zone : ZonesOf(m_tables, words.LongerCount())) {
        const ZoneEnd end = zone.table
                                ? CValueDifferences(m_before.type, m_tables, *zone.table, words, taker).GoOver(progress)
                                : CRunDifferences(words, taker).GoOver(zone.begin, zone.end, progress);
        if (end == ZoneEnd::NoBefore || end == ZoneEnd::NoAfter)
            return Fail(end == ZoneEnd::NoBefore);
        if (end == ZoneEnd::Enough) {
            m_hasEnough = true;
            return true;
        }
    }
    return true;
}

/// Of two types: what their cells show, and the words outside where both have such.
bool CFileDifferences::HandTexts(CChangeTaker& taker, CProgress& progress)
{
    const auto before = WordsOf(m_before);
    const auto after = WordsOf(m_after);
    const bool haveWords = before != nullptr && after != nullptr;
    std::vector<FileZone> zones;
    if (haveWords)
        zones = ZonesOf(m_tables, std::max(before->Count(), after->Count()));
    else if (!m_tables.empty())
        zones.push_back({0, 0, 0});
    for (const FileZone& zone : zones) {
        ZoneEnd end = ZoneEnd::Done;
        if (!zone.table) {
            end = CRunDifferences({*before, *after, true}, taker).GoOver(zone.begin, zone.end, progress);
        } else {
            const CRecipeRows& layout = m_tables[*zone.table].layout;
            const TableSide old = SideOf(m_before, layout, before.get());
            const TableSide fresh = SideOf(m_after, layout, after.get());
            end = CompareTexts(m_tables, *zone.table, old, fresh, taker, progress);
        }
        if (end == ZoneEnd::NoBefore || end == ZoneEnd::NoAfter)
            return Fail(end == ZoneEnd::NoBefore);
        if (end == ZoneEnd::Enough)
            return true;
    }
    return true;
}
