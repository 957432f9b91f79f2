#include "cli/PatchCommand.h"

#include "changes/ChangeLines.h"
#include "changes/Patch.h"
#include "cli/ChangeText.h"
#include "cli/InputFile.h"
#include "cli/KeptVersions.h"
#include "cli/RecipeTables.h"
#include "disk/FileLock.h"
#include "files/RecipeMessages.h"
#include "text/FileMessages.h"
#include "text/MessageText.h"
#include "text/PathText.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string_view>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::u16string_view kCommand = u"patch";

/// Nothing, and then reported, when the input is no patch.
std::optional<Patch> PatchFrom(std::istream& input, CReporter& reporter)
{
    auto patch = ReadPatch(input);
    if (const auto* fault = std::get_if<ChangeFault>(&patch)) {
        reporter.ShowError(FillMessage(u"Can't read the patch: %s!", {FaultText(*fault)}));
        return std::nullopt;
    }
    return std::get<Patch>(std::move(patch));
}

std::optional<Patch> PatchFor(const PatchOptions& options, CReporter& reporter)
{
    if (!options.patch)
        return PatchFrom(std::cin, reporter);
    const fs::path path(*options.patch);
    if (!IsThere(path, reporter))
        return std::nullopt;
    std::ifstream input(path, std::ios::binary);
    if (input)
        return PatchFrom(input, reporter);
    ShowFileError(reporter, kOpenFileError, path);
    return std::nullopt;
}

/// "RW245  row 4  Zone °C(2): 245.0 [0992] is expected, but 250.0 [09C4] is there".
std::u16string TextOf(const PatchRefusal::Other& other)
{
    if (other.expected.zeros != 0)
        return FillMessage(u"%s: %d zeros are expected, but something else is there",
                           {PlaceText(other.expected), std::abs(other.expected.zeros)});
    return FillMessage(u"%s: %s is expected, but %s is there",
                       {PlaceText(other.expected), SideText(other.expected.oldText, other.expected.oldWords, true),
                        SideText(other.text, other.words, true)});
}

void Tell(const PatchRefusal& refusal, const PatchedFile& file, CReporter& reporter)
{
    if (!refusal.reason.empty()) {
        reporter.ShowError(
            FillMessage(u"Can't apply the patch to file %s: %s!", {PathText(file.path), refusal.reason}));
        return;
    }
    const auto count = static_cast<std::int64_t>(refusal.others.size());
    const std::u16string_view pattern = count == 1 ? u"Can't apply the patch to file %s: %d value is another!"
                                                   : u"Can't apply the patch to file %s: %d values are others!";
    reporter.ShowError(FillMessage(pattern, {PathText(file.path), count}));
    for (const PatchRefusal::Other& other : refusal.others)
        reporter.ShowError(TextOf(other));
}

class CRecordPrinter final : public CChangeTaker {
public:
    explicit CRecordPrinter(CStandardOutput& output) : m_output(output) {}

    bool Take(const ChangeRecord& record) override
    {
        m_line.clear();
        AppendLine(record, m_line);
        m_output.Write(m_line);
        return !m_output.HasFailed();
    }

private:
    CStandardOutput& m_output;
    std::string m_line;
};

ExitCode Foretell(CFilePatch& patch, CStandardOutput& output, CReporter& reporter)
{
    std::string header;
    AppendLine(patch.Header(), header);
    output.Write(header);
    CRecordPrinter printer(output);
    patch.HandTo(printer);
    return output.Finish(reporter) ? kDone : kTrouble;
}

void KeepVersion(CFilePatch& patch, const PatchedFile& file, CReporter& reporter)
{
    const CVersionStore versions = UsersVersions();
    VersionKept kept = versions.Keep(file.path, kCommand);
    if (kept.result == VersionKept::Result::NeedsChanges && patch.Words() != nullptr)
        kept = versions.KeepChanges(file.path, kCommand, *patch.Words());
    TellUnlessKept(kept, file.path, reporter);
}

/// The file is held meanwhile.
ExitCode Apply(const PatchOptions& options, const Patch& patch, const PatchedFile& file, CFile* held,
               CStandardOutput& output, CReporter& reporter)
{
    const auto filePatch = MakeFilePatch(patch, file);
    if (const auto refusal = filePatch->Look()) {
        const bool isTrouble = refusal->reason.empty() && refusal->others.empty();
        if (isTrouble)
            ShowFileError(reporter, OpenErrorOf(file.type), file.path);
        else
            Tell(*refusal, file, reporter);
        return isTrouble ? kTrouble : kRefused;
    }
    if (options.dryRun)
        return Foretell(*filePatch, output, reporter);
    if (filePatch->ChangesNothing())
        return kDone;
    if (!options.noVersion)
        KeepVersion(*filePatch, file, reporter);
    const SaveResult saved = filePatch->Write({file.path, held}, reporter);
    if (saved.mayHoldOldAndNew)
        reporter.ShowError(FillMessage(u"File %s may hold old and new words now!", {PathText(file.path)}));
    return saved ? kDone : kTrouble;
}

/// For the tables of the file as it is before and after the patch.
TableRequest RequestOf(const fs::path& file, const ChangeHeader& header)
{
    std::int64_t least = std::max(header.bytes.value_or(0), header.newBytes.value_or(0));
    if (FileTypeOf(file) == FileType::Csv)
        least = header.tables.empty() ? 0 : header.tables.front().rows;
    return {.file = file,
            .leastCount = static_cast<std::uint64_t>(std::max(least, std::int64_t{0})),
            .named = header.tables};
}

} // namespace

ExitCode PatchCommand(const PatchOptions& options, CStandardOutput& output, CReporter& reporter)
{
    auto patch = PatchFor(options, reporter);
    if (!patch)
        return kTrouble;
    if (options.reverse)
        Reverse(*patch);
    auto tables = TablesOf(RequestOf(options.file, patch->header), options.read, reporter);
    if (!tables)
        return kTrouble;
    const PatchedFile file{tables->path, tables->type, std::move(tables->tables)};
    CFileLock lock;
    if (!options.dryRun && lock.Take(file.path, kLongestLockWait) == CFileLock::State::Busy) {
        ShowFileError(reporter, kBusyFileError, file.path);
        return kTrouble;
    }
    return Apply(options, *patch, file, lock.File(), output, reporter);
}
