#include "cli/DiffCommand.h"

#include "changes/ChangeLines.h"
#include "changes/FileDifferences.h"
#include "cli/ChangeText.h"
#include "cli/InputFile.h"
#include "cli/RecipeTables.h"
#include "files/RecipeMessages.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::u16string_view kTwoTypes = u"they are files of two types";
constexpr std::u16string_view kFormAlone = u"they differ in their form alone";

void RefusePatch(const DiffOptions& options, std::u16string_view reason, CReporter& reporter)
{
    reporter.ShowError(FillMessage(u"Can't make a patch from file %s to file %s: %s!",
                                   {PathText(options.file), PathText(options.other), reason}));
}

/// Prints what it takes.
class CPrinter final : public CChangeTaker {
public:
    CPrinter(const DiffOptions& options, const CFileDifferences& differences, CStandardOutput& output)
        : m_options(options),
          m_differences(differences),
          m_output(output)
    {
    }

    bool Take(const ChangeRecord& record) override
    {
        m_hasFormAlone = record.why == ChangeReason::Form;
        if (m_options.patch && m_hasFormAlone)
            return false;
        PrintHeader();
        m_hasAny = true;
        m_line.clear();
        if (PrintsRecords())
            AppendLine(record, m_line);
        else
            AppendChangeText(record, m_line);
        m_output.Write(m_line);
        return !m_output.HasFailed();
    }

    /// Once, before anything else.
    void PrintHeader()
    {
        if (!PrintsRecords() || std::exchange(m_hasHeader, true))
            return;
        m_line.clear();
        AppendLine(m_differences.Header(), m_line);
        m_output.Write(m_line);
    }

    bool HasAny() const { return m_hasAny; }
    bool HasFormAlone() const { return m_hasFormAlone; }

private:
    bool PrintsRecords() const { return m_options.json || m_options.patch; }

    const DiffOptions& m_options;
    const CFileDifferences& m_differences;
    CStandardOutput& m_output;
    std::string m_line;
    bool m_hasHeader = false;
    bool m_hasAny = false;
    bool m_hasFormAlone = false;
};

/// Which files are compared; nothing, and then reported, when one of them is missing or of an unknown type.
std::optional<CFileDifferences> FilesToCompare(const DiffOptions& options, CReporter& reporter)
{
    auto tables = TablesOf({.file = options.file, .other = options.other}, options.read, reporter);
    const fs::path& other = options.other;
    if (!tables || !IsThere(other, reporter))
        return std::nullopt;
    const auto type = KnownTypeOf(other, reporter);
    if (!type)
        return std::nullopt;
    return CFileDifferences({tables->path, tables->type}, {other, *type}, std::move(tables->tables));
}

void TellUnreadable(const CFileDifferences& differences, CReporter& reporter)
{
    const ComparedFile& file = *differences.Unreadable();
    ShowFileError(reporter, OpenErrorOf(file.type), file.path);
}

/// Why the second file cannot be made of the first, as far as that is known beforehand; empty when it can.
std::u16string WhyNoPatch(const DiffOptions& options, CFileDifferences& differences, CProgress& progress)
{
    if (!differences.AreOfOneType())
        return std::u16string(kTwoTypes);
    const bool areTables = FileTypeOf(options.file) == FileType::Csv;
    return areTables ? differences.WhyNoPatch(progress) : std::u16string();
}

} // namespace

ExitCode DiffCommand(const DiffOptions& options, CStandardOutput& output, CReporter& reporter, CProgress& progress)
{
    auto differences = FilesToCompare(options, reporter);
    if (!differences)
        return kTrouble;
    if (options.patch) {
        const std::u16string reason = WhyNoPatch(options, *differences, progress);
        if (differences->Unreadable() == nullptr && !reason.empty()) {
            RefusePatch(options, reason, reporter);
            return kTrouble;
        }
    }
    CPrinter printer(options, *differences, output);
    if (!differences->HandTo(printer, progress)) {
        TellUnreadable(*differences, reporter);
        return kTrouble;
    }
    if (options.patch && printer.HasFormAlone()) {
        RefusePatch(options, kFormAlone, reporter);
        return kTrouble;
    }
    printer.PrintHeader();
    if (!output.Finish(reporter))
        return kTrouble;
    return printer.HasAny() ? kDifferent : kDone;
}
