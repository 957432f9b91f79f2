#include "document/DocumentSheet.h"

#include "changes/Patch.h"
#include "recovery/VersionCells.h"
#include "recovery/VersionContent.h"
#include "sheet/SheetMaking.h"
#include "text/MessageText.h"

#include <memory>
#include <new>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr int kMostReadings = 3; // of a file that others write meanwhile
constexpr std::u16string_view kNoMemoryForSheet = u"There is not enough memory for this sheet.";

ComparedWith VersionToCompare(const CVersionStore& store, const fs::path& file, const Version& version,
                              const CRecipeRows& rows, const std::u16string& name)
{
    ComparedWith other{.name = name, .cells = ReadVersionCells(store, file, version, rows), .openWords = {}};
    if (other.cells.IsKnown() && other.cells.Type() != FileType::Csv)
        other.openWords = [&store, file, stamp = version.stamp]() -> std::shared_ptr<CWordBytes> {
            const auto content = std::make_shared<CVersionContent>(store, file, stamp);
            return content->Fault().empty() ? std::shared_ptr<CWordBytes>(content, content->Words()) : nullptr;
        };
    return other;
}

} // namespace

CDocumentSheet::CDocumentSheet(const CRecipeDocument& document, const CVersionStore* store)
    : m_document(document),
      m_pStore(store)
{
}

Outcome CDocumentSheet::ReadFile(CProgress& progress)
{
    m_content = {};
    m_isOtherNow = false;
    if (m_document.Path().empty())
        return Outcome::Done;
    FileContent after;
    for (int reading = 0; reading < kMostReadings; ++reading) {
        if (const Outcome outcome = ReadFileContent(m_document.Path(), m_content, progress); outcome != Outcome::Done)
            return outcome == Outcome::GivenUp ? outcome : Outcome::Done;
        const FileLook look = m_document.Look();
        m_isOtherNow = look.state != FileLook::State::AsKnown;
        const Outcome outcome = ReadFileContent(m_document.Path(), after, progress);
        if (outcome == Outcome::GivenUp || after == m_content)
            return outcome;
    }
    m_isOtherNow = true;
    m_content = after;
    return Outcome::Done;
}

Outcome CDocumentSheet::Make(const SheetOrder& order, const std::u16string& name, CReporter& reporter,
                             CProgress& progress)
{
    Outcome outcome = Outcome::Failed;
    try {
        outcome = MakeAll(order, name, reporter, progress);
    } catch (const std::bad_alloc&) {
        reporter.ShowError(kNoMemoryForSheet);
    }
    if (outcome != Outcome::Done) {
        m_sheet = {};
        m_records.clear();
    }
    return outcome;
}

Outcome CDocumentSheet::MakeAll(const SheetOrder& order, const std::u16string& name, CReporter& reporter,
                                CProgress& progress)
{
    const CRecipeRows& rows = m_document.Rows();
    const SheetSubject subject{.rows = rows,
                               .stored = m_document.Stored(),
                               .path = m_document.Path(),
                               .format = std::u16string(TextOf(m_document.Format().name)),
                               .content = m_content,
                               .isOtherNow = m_isOtherNow};
    const SheetWishes wishes{.title = order.title, .rows = order.rows, .user = UserName(), .time = UtcNow()};
    const CSheetMaker maker(subject, wishes);
    if (maker.RowCount() * rows.Columns().size() > kMostSheetValues) {
        reporter.ShowError(TooManyValuesText(maker.RowCount(), rows.Columns().size()));
        return Outcome::Failed;
    }
    ComparedWith other;
    Outcome outcome = FindOther(order, name, other, reporter, progress);
    if (outcome == Outcome::Done)
        outcome = maker.Make(m_sheet, m_records, progress);
    if (outcome == Outcome::Done && !std::holds_alternative<std::monostate>(order.since))
        outcome = AddChanges(order, std::move(other), progress);
    return outcome;
}

Outcome CDocumentSheet::FindOther(const SheetOrder& order, const std::u16string& name, ComparedWith& other,
                                  CReporter& reporter, CProgress& progress) const
{
    if (const auto* path = std::get_if<fs::path>(&order.since))
        return m_document.ReadToCompare(*path, other, reporter, progress);
    const auto* version = std::get_if<Version>(&order.since);
    if (version == nullptr)
        return Outcome::Done;
    if (m_pStore != nullptr)
        other = VersionToCompare(*m_pStore, m_document.Path(), *version, m_document.Rows(), name);
    if (other.cells.IsKnown())
        return Outcome::Done;
    reporter.ShowError(FillMessage(u"What the file held in %s can't be read.", {name}));
    return Outcome::Failed;
}

/// A comparison leads from the table to the other file; changes came about the other way round.
Outcome CDocumentSheet::AddChanges(const SheetOrder& order, ComparedWith other, CProgress& progress)
{
    CSheetChanges changes(other.name, order.rows);
    const auto comparison =
        std::make_shared<CTableComparison>(m_document.Rows(), m_document.Stored(), std::move(other));
    comparison->Begin({m_document.Path(), std::u16string(TextOf(m_document.Format().name))}, m_document.Type());
    if (const Outcome outcome = comparison->Finish(progress); outcome != Outcome::Done)
        return outcome;
    const CComparedChanges list(comparison);
    ChangeHeader header = list.Header();
    Reverse(header);
    changes.TakeHeader(header);
    for (std::size_t i = 0; i < list.Count(); ++i) {
        ChangeRecord record = list.At(i);
        Reverse(record);
        changes.Take(record);
    }
    m_sheet.changes = changes.Changes();
    m_records = changes.Records();
    return Outcome::Done;
}
