#include "cli/SheetCommand.h"

#include "cli/OpenRecipe.h"
#include "cli/SheetSince.h"
#include "disk/Program.h"
#include "files/RecipeMessages.h"
#include "sheet/SheetFile.h"
#include "sheet/SheetHtml.h"
#include "sheet/SheetMaking.h"
#include "text/FileMessages.h"
#include "text/Utf8Text.h"

#include <cstdint>
#include <filesystem>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr const char* kPdfProgram = "vantor-sheet";
constexpr int kMostReadings = 3; // of a file that others write meanwhile

/// Has the program that makes PDF do the same command. It reports what fails.
bool RunPdfProgram(const std::vector<std::string>& arguments, CReporter& reporter)
{
    const fs::path program = SiblingProgram(kPdfProgram);
    const auto status = RunProgram(program, arguments);
    if (!status)
        ShowFileError(reporter, u"PDF is made by the program %s, which can't be run! HTML needs no other program!",
                      program);
    return status == 0;
}

/// Makes one sheet of one state of a file.
class CSheetOfFile {
public:
    CSheetOfFile(const SheetOptions& options, CReporter& reporter, CProgress& progress)
        : m_options(options),
          m_reporter(reporter),
          m_progress(progress)
    {
    }

    /// False after a failure, then reported.
    bool Make()
    {
        FileContent after;
        for (int reading = 0; reading < kMostReadings; ++reading) {
            if (!ReadContent(m_content) || !MakeOnce() || !ReadContent(after))
                return false;
            if (after == m_content)
                return true;
        }
        ShowFileError(m_reporter, kBusyFileError, m_options.file);
        return false;
    }

    const RecipeSheet& Sheet() const { return m_sheet; }
    const std::string& Records() const { return m_records; }

private:
    bool ReadContent(FileContent& content)
    {
        if (!IsThere(m_options.file, m_reporter))
            return false;
        if (ReadFileContent(m_options.file, content, m_progress) == Outcome::Done)
            return true;
        ShowFileError(m_reporter, OpenErrorOf(FileTypeOf(m_options.file)), m_options.file);
        return false;
    }

    bool MakeOnce()
    {
        CRecipeDocument document;
        if (!OpenRecipe(document, m_options.file, m_options.read, m_reporter))
            return false;
        SheetWishes wishes{.title = FromUtf8(m_options.title.value_or("")),
                           .rows = std::nullopt,
                           .user = UserName(),
                           .time = UtcNow()};
        if (!ChooseRows(document.Settings(), wishes) ||
            document.ReadOnly(m_reporter, m_progress) == CRecipeDocument::Reading::Failed)
            return false;
        const SheetSubject subject{.rows = document.Rows(),
                                   .stored = document.Stored(),
                                   .path = m_options.file,
                                   .format = std::u16string(TextOf(document.Format().name)),
                                   .content = m_content};
        if (CSheetMaker(subject, wishes).Make(m_sheet, m_records, m_progress) != Outcome::Done)
            return false;
        return !m_options.since || AddChanges(document.Settings(), wishes);
    }

    bool ChooseRows(const ReadSettings& settings, SheetWishes& wishes)
    {
        const CRecipeRows layout = LayOutRows(settings);
        if (m_options.rows && !m_options.rows->isAll) {
            const auto narrowed = CNarrowedRows::Make(layout, {}, m_reporter);
            wishes.rows = narrowed->Chosen(*m_options.rows, m_reporter);
            if (!wishes.rows)
                return false;
        }
        const auto count = wishes.rows ? wishes.rows->size() : static_cast<std::uint64_t>(layout.RowCount());
        if (count * layout.Columns().size() <= kMostSheetValues)
            return true;
        m_reporter.ShowError(TooManyValuesText(count, layout.Columns().size()));
        return false;
    }

    bool AddChanges(const ReadSettings& settings, const SheetWishes& wishes)
    {
        const auto since = FindSince(*m_options.since, m_options.file, m_reporter);
        if (!since)
            return false;
        CSheetChanges changes(since->name, wishes.rows);
        if (!CollectChanges(*since, m_options.file, settings, changes, m_reporter, m_progress))
            return false;
        m_sheet.changes = changes.Changes();
        m_records = changes.Records();
        return true;
    }

    const SheetOptions& m_options;
    CReporter& m_reporter;
    CProgress& m_progress;
    FileContent m_content;
    RecipeSheet m_sheet;
    std::string m_records;
};

bool MakePdf(const CSheetOfFile& made, const SheetOptions& options, CSheetPdf& pdf, std::string& bytes,
             CReporter& reporter, CProgress& progress)
{
    const SheetForPdf sheet{.sheet = made.Sheet(),
                            .paper = options.isLetter ? SheetPaper::Letter : SheetPaper::A4,
                            .records = made.Records()};
    if (pdf.Make(sheet, bytes, progress) == Outcome::Done)
        return true;
    ShowFileError(reporter, kSaveFileError, options.output);
    return false;
}

} // namespace

bool MakeSheet(const SheetOptions& options, const PdfMaking& making, CReporter& reporter, CProgress& progress)
{
    const fs::path& target = options.output;
    if (!MayWriteSheet(target, options.file, reporter))
        return false;
    const bool isPdf = SheetFileTypeOf(target) == SheetFileType::Pdf;
    if (isPdf && making.pdf == nullptr)
        return RunPdfProgram(making.arguments, reporter);
    CSheetOfFile made(options, reporter, progress);
    if (!made.Make())
        return false;
    std::string bytes;
    if (!isPdf)
        bytes = SheetHtml(made.Sheet());
    else if (!MakePdf(made, options, *making.pdf, bytes, reporter, progress))
        return false;
    return WriteSheetFile(target, bytes, reporter);
}
