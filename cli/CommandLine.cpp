#include "cli/CommandLine.h"

#include "cli/Arguments.h"
#include "cli/CheckCommand.h"
#include "cli/ConvertCommand.h"
#include "cli/DiffCommand.h"
#include "cli/ExitCode.h"
#include "cli/FindCommand.h"
#include "cli/FormatsExportCommand.h"
#include "cli/FormatsImportCommand.h"
#include "cli/FormatsListCommand.h"
#include "cli/MergeCommand.h"
#include "cli/PatchCommand.h"
#include "cli/SetArguments.h"
#include "cli/SetCommand.h"
#include "cli/SheetCommand.h"
#include "cli/ShowCommand.h"
#include "cli/StandardStreams.h"
#include "cli/TableOptions.h"
#include "cli/TextconvCommand.h"
#include "cli/UnsavedCommand.h"
#include "cli/ValuesCommand.h"
#include "cli/VersionsCommand.h"
#include "disk/File.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kRecipeFile = "Recipe file: .rcp, .csv, .erp or .frp";

/// What the commands work with, and how the one that ran went.
struct Session {
    Session(std::FILE* out, std::FILE* error) : progress(error), output(out, progress), reporter(error, progress) {}

    CTerminalProgress progress;
    CStandardOutput output;
    CStandardError reporter;
    bool done = true;
    std::optional<ExitCode> status; ///< of a command that tells more by it

    ShowOptions show;
    TextconvOptions textconv;
    FindOptions find;
    DiffOptions diff;
    PatchOptions patch;
    SetOptions set;
    CSetArguments setArguments;
    ConvertOptions convert;
    MergeOptions merge;
    FormatsListOptions list;
    FormatsExportOptions exporting;
    FormatsImportOptions importing;
    CheckOptions check;
    ValuesOptions values;
    UnsavedOptions unsaved;
    VersionsOptions versions;
    SheetOptions sheet;
    PdfMaking pdf;
};

void AddFile(CLI::App& command, const std::string& name, fs::path& file, const std::string& description)
{
    AddPath(command, name, file, description)->required()->type_name("");
}

/// Has the command end with the status that `run` gives. What stops it is trouble, for want of memory, too.
template <class Run>
void RunForStatus(CLI::App& command, Session& session, Run run)
{
    command.callback([&session, run] {
        session.status = kTrouble;
        try {
            session.status = run();
        } catch (const std::bad_alloc&) {
            session.reporter.ShowError(u"There is not enough memory!");
        }
    });
}

void AddNoVersion(CLI::App& command, bool& noVersion)
{
    command.add_flag("--no-version", noVersion, "Do not keep what is overwritten as an earlier version");
}

void AddShow(CLI::App& app, Session& session)
{
    CLI::App* command = app.add_subcommand("show", "Print the rows of a recipe file");
    AddFile(*command, "FILE", session.show.file, kRecipeFile);
    AddTableOptions(*command, session.show.read);
    CLI::Option* json = command->add_flag(
        "--json", [&session](std::int64_t) { session.show.form = ShowForm::Json; }, "Print JSON instead of a table");
    command
        ->add_flag(
            "--jsonl", [&session](std::int64_t) { session.show.form = ShowForm::Lines; },
            "Print a line of JSON a row, with units, ranges and names")
        ->excludes(json);
    command->callback([&session] { session.done = ShowRecipe(session.show, session.output, session.reporter); });
}

void AddTextconv(CLI::App& app, Session& session)
{
    CLI::App* command = app.add_subcommand("textconv", "Print a recipe file as lines for git to compare");
    AddFile(*command, "FILE", session.textconv.file, kRecipeFile);
    AddTableOptions(*command, session.textconv.read);
    RunForStatus(*command, session, [&session] {
        return PrintAsText(session.textconv, session.output, session.reporter, session.progress);
    });
}

void AddFind(CLI::App& app, Session& session)
{
    FindOptions& options = session.find;
    CLI::App* command = app.add_subcommand("find", "Find cells that show a text, or places where a number stands");
    AddFile(*command, "FILE", options.file, kRecipeFile);
    command->add_option("TEXT", options.text, "What the cells show; with --anywhere a number")
        ->required()
        ->type_name("");
    AddText(*command, "--item", options.item, "Title of the columns to look in (default: all)")->type_name("ITEM");
    CLI::Option* part = command->add_flag("--part", options.isPart, "Find cells that contain the text, too");
    command
        ->add_flag("--anywhere", options.anywhere,
                   "Find every place in the file where the number stands, as any type and scaling")
        ->excludes(part)
        ->excludes("--item");
    AddTableOptions(*command, options.read);
    RunForStatus(*command, session,
                 [&session] { return FindText(session.find, session.output, session.reporter, session.progress); });
}

void AddDiff(CLI::App& app, Session& session)
{
    DiffOptions& options = session.diff;
    CLI::App* command = app.add_subcommand("diff", "Print in what two recipe files differ, a line a change");
    AddFile(*command, "FILE", options.file, kRecipeFile);
    AddFile(*command, "OTHER", options.other, "Recipe file that counts as the new one");
    AddTableOptions(*command, options.read);
    CLI::Option* json = command->add_flag("--json", options.json, "Print the changes as JSON Lines");
    command->add_flag("--patch", options.patch, "Print JSON Lines that make OTHER of FILE, or refuse to")
        ->excludes(json);
    RunForStatus(*command, session,
                 [&session] { return DiffCommand(session.diff, session.output, session.reporter, session.progress); });
}

void AddPatch(CLI::App& app, Session& session)
{
    PatchOptions& options = session.patch;
    CLI::App* command = app.add_subcommand("patch", "Make the changes of a patch in a recipe file, all or none");
    AddFile(*command, "FILE", options.file, kRecipeFile);
    AddPath(*command, "PATCH", options.patch, "File of changes as JSON Lines (default: standard input)")->type_name("");
    AddTableOptions(*command, options.read);
    command->add_flag("--reverse", options.reverse, "Take the changes back: new becomes old");
    command->add_flag("--dry-run", options.dryRun, "Print the changes that would be made, and write nothing");
    AddNoVersion(*command, options.noVersion);
    RunForStatus(*command, session,
                 [&session] { return PatchCommand(session.patch, session.output, session.reporter); });
}

void AddSet(CLI::App& app, Session& session)
{
    CLI::App* command = app.add_subcommand("set", "Put texts into cells of a recipe file and save it");
    AddFile(*command, "FILE", session.set.file, kRecipeFile);
    AddTableOptions(*command, session.set.read);
    session.setArguments.AddTo(*command);
    command->add_flag("--only-edited", session.set.onlyEdited, "Save the cells that were set and change no other byte");
    command->add_flag("--dry-run", session.set.dryRun, "Print what would change as JSON Lines, and write nothing");
    AddNoVersion(*command, session.set.noVersion);
    command->callback([&session] {
        session.setArguments.MoveTo(session.set);
        session.done = SetCells(session.set, session.output, session.reporter, session.progress);
    });
}

void AddConvert(CLI::App& app, Session& session)
{
    CLI::App* command = app.add_subcommand("convert", "Save the rows of a recipe file as another, by its type");
    AddFile(*command, "SOURCE", session.convert.source, kRecipeFile);
    AddFile(*command, "TARGET", session.convert.target, "Recipe file to write; an existing one is replaced");
    AddTableOptions(*command, session.convert.read);
    AddNoVersion(*command, session.convert.noVersion);
    command->callback(
        [&session] { session.done = ConvertRecipe(session.convert, session.reporter, session.progress); });
}

/// The options for one of the files to merge; `which` is "first" or "second".
void AddMergePart(CLI::App& command, const std::string& which, MergePart& part)
{
    AddNumber(command, "--" + which + "-read", part.readStart,
              "Word address to read the " + which + " file from (default: 0)");
    AddNumber(command, "--" + which + "-length", part.length,
              "Words to take of the " + which + " file (default: its length)");
    AddNumber(command, "--" + which + "-place", part.place, "Where they go in the merged file (default: 0)");
}

void AddMerge(CLI::App& app, Session& session)
{
    MergeOptions& options = session.merge;
    CLI::App* command = app.add_subcommand("merge", "Merge words of two .rcp files into a new one");
    AddFile(*command, "FIRST", options.first.file, "First file to take words from");
    AddFile(*command, "SECOND", options.second.file, "Second file to take words from");
    AddFile(*command, "TARGET", options.target, "Merged file; \".rcp\" is appended where it is missing");
    AddMergedSize(*command, "--size", options.size, "Words in the merged file (default: 128K)");
    AddMergePart(*command, "first", options.first);
    AddMergePart(*command, "second", options.second);
    command->add_flag("--force", options.force, "Replace an existing merged file");
    AddNoVersion(*command, options.noVersion);
    command->callback([&session] { session.done = MergeRecipes(session.merge, session.reporter); });
}

void AddFormats(CLI::App& app, Session& session)
{
    CLI::App* formats = app.add_subcommand("formats", "List, export and import data formats");
    formats->require_subcommand(1);

    CLI::App* list = formats->add_subcommand("list", "Print name, item count and words per row of each format");
    AddLibrary(*list, session.list.library);
    list->callback([&session] { session.done = ListFormats(session.list, session.output, session.reporter); });

    CLI::App* exportCommand = formats->add_subcommand("export", "Write the format library as JSON");
    AddLibrary(*exportCommand, session.exporting.library);
    AddPath(*exportCommand, "-o,--output", session.exporting.file, "File to write (default: standard output)")
        ->type_name("FILE");
    exportCommand->callback(
        [&session] { session.done = ExportFormats(session.exporting, session.output, session.reporter); });

    CLI::App* importCommand = formats->add_subcommand("import", "Replace the format library by what a JSON file says");
    AddFile(*importCommand, "FILE", session.importing.file, "JSON file, as \"formats export\" writes it");
    AddLibrary(*importCommand, session.importing.library);
    AddNoVersion(*importCommand, session.importing.noVersion);
    importCommand->callback([&session] { session.done = ImportFormats(session.importing, session.reporter); });
}

void AddFiles(CLI::App& command, std::vector<fs::path>& files)
{
    AddPaths(command, "FILE", files, kRecipeFile)->required()->type_name("");
}

void AddCheck(CLI::App& app, Session& session)
{
    CheckOptions& options = session.check;
    CLI::App* command = app.add_subcommand("check", "Find values outside their limits, and what a save would change");
    AddFiles(*command, options.files);
    AddTableOptions(*command, options.read);
    AddChoice(*command, "--output", options.asLines, {"text", "jsonl"}, "How findings are printed (default: text)");
    AddChoice(*command, "--fail-on", options.failOnWarning, {"error", "warning"},
              "What makes the exit status 1 (default: error)");
    RunForStatus(*command, session, [&session] {
        return CheckRecipes(session.check, session.output, session.reporter, session.progress);
    });
}

void AddValues(CLI::App& app, Session& session)
{
    CLI::App* command = app.add_subcommand("values", "Print the values of recipe files, a row a line as JSON");
    AddFiles(*command, session.values.files);
    AddTableOptions(*command, session.values.read);
    RunForStatus(*command, session, [&session] {
        return PrintValues(session.values, session.output, session.reporter, session.progress);
    });
}

void AddUnsaved(CLI::App& app, Session& session)
{
    CLI::App* unsaved = app.add_subcommand("unsaved", "List, show and drop the edits that windows did not save");
    unsaved->require_subcommand(1);

    CLI::App* list = unsaved->add_subcommand("list", "Print ID, time, number of edits, state and file of each journal");
    list->callback([&session] { session.done = ListUnsaved(session.output, session.reporter); });

    CLI::App* show = unsaved->add_subcommand("show", "Print the edits of a journal as JSON Lines");
    AddText(*show, "ID", session.unsaved.id, "Which (default: the only one that was left behind)")->type_name("");
    show->callback([&session] { session.done = ShowUnsaved(session.unsaved, session.output, session.reporter); });

    CLI::App* drop = unsaved->add_subcommand("drop", "Give edits up; those that were dropped already go for good");
    AddText(*drop, "ID", session.unsaved.id, "Which (default: all that were left behind)")->type_name("");
    drop->callback([&session] { session.done = DropUnsaved(session.unsaved, session.reporter); });
}

CLI::App* AddVersionsCommand(CLI::App& versions, Session& session, const std::string& name,
                             const std::string& description)
{
    CLI::App* command = versions.add_subcommand(name, description);
    AddFile(*command, "FILE", session.versions.file, "File whose versions they are; it need not be there any more");
    return command;
}

CLI::Option* AddTime(CLI::App& command, std::string& time, const std::string& description)
{
    return command.add_option("TIME", time, description)->type_name("");
}

void AddVersions(CLI::App& app, Session& session)
{
    VersionsOptions& options = session.versions;
    CLI::App* versions = app.add_subcommand("versions", "List, print, restore and forget earlier versions of a file");
    versions->require_subcommand(1);

    CLI::App* list = AddVersionsCommand(*versions, session, "list", "Print a line a version, the newest first");
    AddTime(*list, options.time, "Beginning of the times to print (default: all)");
    list->callback([&session] { session.done = ListVersions(session.versions, session.output, session.reporter); });

    CLI::App* show = AddVersionsCommand(*versions, session, "show", "Write what the file held in a version");
    AddTime(*show, options.time, "Time of the version as printed by list, or its beginning (default: the newest)");
    AddPath(*show, "-o,--output", options.output, "File to write (default: standard output)")->type_name("PATH");
    show->callback([&session] { session.done = ShowVersion(session.versions, session.output, session.reporter); });

    CLI::App* restore = AddVersionsCommand(*versions, session, "restore", "Put a version in the place of the file");
    AddTime(*restore, options.time, "Time of the version as printed by list, or its beginning (default: the newest)");
    restore->callback([&session] { session.done = RestoreFile(session.versions, session.reporter); });

    CLI::App* forget = AddVersionsCommand(*versions, session, "forget", "Remove versions of the file");
    AddTime(*forget, options.time, "Time of the one to remove, or its beginning (default: all)");
    forget->callback([&session] { session.done = ForgetVersions(session.versions, session.reporter); });
}

void AddSheet(CLI::App& app, Session& session)
{
    SheetOptions& options = session.sheet;
    CLI::App* command =
        app.add_subcommand("sheet", "Write the rows of a recipe file as a sheet for people: PDF or HTML");
    AddFile(*command, "FILE", options.file, kRecipeFile);
    AddPath(*command, "-o,--output", options.output, "Sheet to write: .pdf or .html; an existing one is replaced")
        ->required()
        ->type_name("SHEET");
    AddTableOptions(*command, options.read);
    const auto takeRows = [&options](const CLI::results_t& texts) {
        options.rows = ReadRowChoice(texts.front());
        return options.rows.has_value();
    };
    command->add_option("--only-rows", takeRows, "Rows on the sheet, as 4, 5-20, 1,3,7-9 or * (default: all)")
        ->type_name("ROWS");
    AddText(*command, "--since", options.since,
            "Tell what changed since this other file, or since the version of this time or beginning of one")
        ->type_name("FILE|TIME");
    AddChoice(*command, "--paper", options.isLetter, {"a4", "letter"}, "Paper of a PDF (default: a4)");
    AddText(*command, "--title", options.title, "Title of the sheet (default: with the name of the file)")
        ->type_name("TEXT");
    command->callback(
        [&session] { session.done = MakeSheet(session.sheet, session.pdf, session.reporter, session.progress); });
}

bool Print(std::string_view text, Session& session)
{
    session.output.Write(text);
    return session.output.Finish(session.reporter);
}

ExitCode RunSession(std::vector<std::string> arguments, std::FILE* out, std::FILE* error, CSheetPdf* pdf)
{
    Session session(out, error);
    session.pdf = {pdf, arguments};
    CLI::App app("Works with the recipe files of operator panels", "vantor-cli");
    app.set_version_flag("--version", "vantor-cli " VANTOR_VERSION);
    app.require_subcommand(1);
    app.allow_windows_style_options(false); // a path may begin with "/" there, too; commands added below take this over
    AddShow(app, session);
    AddFind(app, session);
    AddTextconv(app, session);
    AddDiff(app, session);
    AddPatch(app, session);
    AddSet(app, session);
    AddConvert(app, session);
    AddMerge(app, session);
    AddFormats(app, session);
    AddCheck(app, session);
    AddValues(app, session);
    AddUnsaved(app, session);
    AddVersions(app, session);
    AddSheet(app, session);

    try {
        std::reverse(arguments.begin(), arguments.end()); // as the parser takes them
        app.parse(std::move(arguments));
    } catch (const CLI::CallForHelp&) {
        session.done = Print(app.help(), session);
    } catch (const CLI::CallForVersion& version) {
        session.done = Print(std::string(version.what()) + '\n', session);
    } catch (const CLI::ParseError& fault) {
        WriteText(error, std::string(fault.what()) + "\n\n" + app.help());
        return kTrouble;
    }
    return session.status.value_or(session.done ? kDone : kFailed);
}

} // namespace

int RunCommandLine(std::vector<std::string> arguments, std::FILE* out, std::FILE* error, CSheetPdf* pdf)
try {
    return RunSession(std::move(arguments), out, error, pdf);
} catch (const std::bad_alloc&) {
    std::fputs("There is not enough memory!\n", error);
    return kFailed;
} catch (const std::exception& fault) {
    WriteText(error, std::string(fault.what()) + '\n');
    return kFailed;
}
