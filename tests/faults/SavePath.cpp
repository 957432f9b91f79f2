#include "tests/faults/SavePath.h"

#include "files/FileType.h"
#include "files/PagedFile.h"
#include "files/PagedRecipeFile.h"
#include "library/FormatLibrary.h"
#include "tests/support/Formats.h"
#include "tests/support/ProcessRun.h"

#include <cstdint>
#include <cstdlib>
#include <stdexcept>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr const char* kRecipeMessage = "Can't save file";
constexpr const char* kTableMessage = "Save file";

/// `count` bytes that are all different from those of another `seed`.
Bytes Pattern(std::size_t count, int seed)
{
    Bytes bytes(count);
    for (std::size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<std::byte>(static_cast<std::size_t>(seed) + 7 * i % 50);
    return bytes;
}

void Nothing(const SavePlace&) {}

std::function<void(const SavePlace&)> Holding(const char* name, std::size_t bytes)
{
    return [=](const SavePlace& place) { WriteAll(place.Disk(name), Pattern(bytes, 65)); };
}

/// Values that a save keeps, if they were read.
void HoldingTable(const SavePlace& place)
{
    const std::string table = "5,one\r\n6,two\r\n7,three\r\n8,four\r\n";
    WriteAll(place.Disk("a.csv"), std::as_bytes(std::span(table)));
}

constexpr std::u16string_view kTable = u"\"5\"\t\"one\"\r\n\"6\"\ttwo\r\n";

void HoldingSavedTable(const SavePlace& place)
{
    WriteAll(place.Disk("a.csv"), Utf16File(kTable));
}

void HoldingLinkedTable(const SavePlace& place)
{
    HoldingSavedTable(place);
    fs::create_hard_link(place.Disk("a.csv"), place.Aside("same"));
}

/// The table on the disk is what a save made of the one aside.
void HoldingTableToPutBack(const SavePlace& place)
{
    HoldingSavedTable(place);
    WriteAll(place.Aside("saved.csv"), Utf16File(kTable));
    const std::string old = "5,one,further\n7,two\n\n\nlast";
    WriteAll(place.Aside("old.csv"), std::as_bytes(std::span(old)));
}

void HoldingLinkedTableToPutBack(const SavePlace& place)
{
    HoldingTableToPutBack(place);
    fs::create_hard_link(place.Disk("a.csv"), place.Aside("same"));
}

std::function<void(const SavePlace&)> HoldingLinked(const char* name)
{
    return [=](const SavePlace& place) {
        WriteAll(place.Disk(name), Pattern(500, 65));
        fs::create_hard_link(place.Disk(name), place.Aside("same"));
    };
}

/// For the owner alone: other rights than those of a new file.
void HoldingOwnExport(const SavePlace& place)
{
    WriteAll(place.Disk("out.json"), Pattern(90, 65));
    fs::permissions(place.Disk("out.json"), fs::perms::owner_read | fs::perms::owner_write);
}

void HoldingLibrary(const SavePlace& place)
{
    FormatLibrary library;
    for (const char16_t* name : {u"One", u"Two", u"Three"})
        library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(
            name, {MakeItem(u"Word", DataType::Signed16, 1, 5), MakeItem(u"Long", DataType::Signed32, 2, 9)})));
    library.save(place.Disk("RecipeFile.Dat"));
}

/// As long as the one that is imported, and other bytes.
void HoldingLibraryAsLong(const SavePlace& place)
{
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(MakeFormat(u"Old", {})));
    library.save(place.Disk("RecipeFile.Dat"));
}

void HoldingLinkedLibrary(const SavePlace& place)
{
    HoldingLibrary(place);
    fs::create_hard_link(place.Disk("RecipeFile.Dat"), place.Aside("same"));
}

/// Words of which a save rewrites one in each row of three: with two decimals 105 is shown as "1.50".
Bytes RewrittenWords(std::size_t rows)
{
    Bytes bytes;
    for (std::size_t row = 0; row < rows; ++row) {
        const Bytes words = WordBytes({static_cast<std::uint16_t>(105 + 100 * (row % 50)), 0x4241, 0x4443});
        bytes.insert(bytes.end(), words.begin(), words.end());
    }
    return bytes;
}

/// Another one, if VANTOR_RECIPE_SAVE in the environment names it.
const char* DocumentProgram()
{
    const char* other = std::getenv("VANTOR_RECIPE_SAVE");
    return other != nullptr ? other : VANTOR_RECIPE_SAVE_PROGRAM;
}

std::function<void(const SavePlace&)> HoldingRows(const char* name, std::size_t rows)
{
    return [=](const SavePlace& place) { WriteAll(place.Disk(name), RewrittenWords(rows)); };
}

/// A paged file with so many rows from `first` on.
std::function<void(const SavePlace&)> HoldingRowsInPages(const char* name, std::int64_t first, std::size_t rows)
{
    return [=](const SavePlace& place) {
        WriteAll(place.Disk(name), {});
        const PagedKind kind = KindOf(FileTypeOf(name).value());
        if (!PagedWrite(place.Disk(name), WordAddress(first), 3 * rows, RewrittenWords(rows), kind))
            throw std::runtime_error("cannot make the file");
    };
}

/// The file is what a save makes of `holding`, which is aside.
std::function<void(const SavePlace&)> Saved(std::function<void(const SavePlace&)> holding, const char* name,
                                            const char* start, const char* rows)
{
    return [=](const SavePlace& place) {
        holding(place);
        fs::copy_file(place.Disk(name), place.Aside(name), fs::copy_options::overwrite_existing);
        RunProcess(DocumentProgram(), {"saved", place.Disk(name), start, rows, place.Aside(name)});
    };
}

/// A paged file with words in the flat part and in one page after it.
void HoldingPages(const SavePlace& place)
{
    WriteAll(place.Disk("a.frp"), Pattern(65536, 65));
    PagedWrite(place.Disk("a.frp"), WordAddress(32768), 100, Pattern(200, 70), kFrp);
}

using Words = std::vector<std::string>;

/// `command`, followed by the library, the first row and the number of rows.
Words Reading(const SavePlace& place, Words command, const char* start = "0", const char* rows = "4")
{
    const Words options = {"--library", place.Aside("RecipeFile.Dat"), "--start", start, "--rows", rows};
    command.insert(command.end(), options.begin(), options.end());
    return command;
}

std::function<Words(const SavePlace&)> Setting(const char* name, const char* start = "0", const char* rows = "4")
{
    return [=](const SavePlace& place) {
        return Reading(place, {"set", place.Disk(name), "--cell", "1", "2", "291", "--cell", "2", "3", "xy"}, start,
                       rows);
    };
}

std::function<Words(const SavePlace&)> Converting(const char* name, const char* start = "0", const char* rows = "4")
{
    return [=](const SavePlace& place) {
        return Reading(place, {"convert", place.Aside("a.rcp"), place.Disk(name)}, start, rows);
    };
}

/// A patch of these records for a file that `holding` makes.
SavePath Patching(const char* name, Leaves leaves, const char* file, std::function<void(const SavePlace&)> holding,
                  const std::string& records)
{
    const std::string patch = "{\"vantor\":\"changes\",\"version\":1}\n" + records;
    return {.name = name,
            .leaves = leaves,
            .target = file,
            .message = file,
            .prepare =
                [holding = std::move(holding), patch](const SavePlace& place) {
                    holding(place);
                    WriteAll(place.Aside("p.jsonl"), std::as_bytes(std::span(patch)));
                },
            .arguments =
                [file](const SavePlace& place) {
                    return Reading(place, {"patch", place.Disk(file), place.Aside("p.jsonl")});
                },
            .lines = leaves == Leaves::OldOrNew ? 1 : 2,
            .failure = 2,
            .tellsTears = leaves != Leaves::OldOrNew};
}

Words Merging(const SavePlace& place)
{
    return {"merge",
            place.Aside("a.rcp"),
            place.Aside("a.rcp"),
            place.Disk("m.rcp"),
            "--force",
            "--second-length",
            "5",
            "--second-place",
            "100000"};
}

Words Importing(const SavePlace& place)
{
    return {"formats", "import", place.Aside("formats.json"), "--library", place.Disk("RecipeFile.Dat")};
}

Words Exporting(const SavePlace& place)
{
    return {"formats", "export", "--library", place.Aside("RecipeFile.Dat"), "-o", place.Disk("out.json")};
}

Words SavingEdits(const SavePlace& place)
{
    return {"edits", place.Disk("a.csv")};
}

std::function<Words(const SavePlace&)> Doing(const char* command, const char* name, const char* start, const char* rows)
{
    return [=](const SavePlace& place) { return Words{command, place.Disk(name), start, rows, place.Aside(name)}; };
}

/// A save of the rows from `start` on in a file that holds what `holding` makes.
SavePath OfDocument(const char* name, const char* command, Leaves leaves, const char* file,
                    std::function<void(const SavePlace&)> holding, const char* start, const char* rows)
{
    const bool isPutBack = std::string_view(command) == "put-back";
    const bool isTable = leaves == Leaves::OldOrNew;
    return {.name = name,
            .leaves = leaves,
            .target = file,
            .message = isTable ? kTableMessage : kRecipeMessage,
            .prepare = isPutBack ? Saved(std::move(holding), file, start, rows) : std::move(holding),
            .arguments = Doing(command, file, start, rows),
            .program = DocumentProgram(),
            .tellsTears = true};
}

Words PuttingBack(const SavePlace& place)
{
    return {"put-back", place.Disk("a.csv"), place.Aside("old.csv"), place.Aside("saved.csv")};
}

} // namespace

const char* SavePath::Program() const
{
    if (program != nullptr)
        return program;
    const char* other = std::getenv("VANTOR_CLI");
    return other != nullptr ? other : VANTOR_CLI_PROGRAM;
}

SavePlace::SavePlace()
{
    fs::create_directory(folder / "aside");
    fs::create_directory(folder / "disk");
    FormatLibrary library;
    library.formats.push_back(std::make_unique<DataFormat>(
        MakeFormat(u"Row", {MakeItem(u"Word", DataType::Signed16, 1, 5), MakeItem(u"Name", DataType::String, 2, 0)})));
    library.rowCount = 4;
    library.save(Aside("RecipeFile.Dat"));
    WriteAll(Aside("a.rcp"), Pattern(48, 40));
    const std::string json = R"({"formats": [{"name": "New", "items": []}]})";
    WriteAll(Aside("formats.json"), std::as_bytes(std::span(json)));
}

const std::vector<SavePath>& CommandLineSavePaths()
{
    // clang-format off
    static const std::vector<SavePath> paths = {
        {"RecipeInside",       Leaves::InPlace,  "a.rcp", kRecipeMessage, Holding("a.rcp", 48), Setting("a.rcp")},
        {"RecipeGrows",        Leaves::InPlace,  "a.rcp", kRecipeMessage, Holding("a.rcp", 14), Setting("a.rcp")},
        {"RecipeGrowsByAGap",  Leaves::InPlace,  "a.rcp", kRecipeMessage, Holding("a.rcp", 14), Setting("a.rcp", "20")},
        {"NewRecipe",          Leaves::OldOrNew, "n.rcp", kRecipeMessage, Nothing, Converting("n.rcp")},
        {"RecipeMadeAnew",     Leaves::OldOrNew, "a.rcp", "a.rcp",        Holding("a.rcp", 48), Converting("a.rcp", "3")},
        {"RecipeReplaced",     Leaves::OldOrNew, "a.rcp", kRecipeMessage, Holding("a.rcp", 148), Converting("a.rcp")},
        {"RecipeWithHardLink", Leaves::Copied,   "a.rcp", kRecipeMessage, HoldingLinked("a.rcp"), Converting("a.rcp")},
        {"Table",              Leaves::OldOrNew, "a.csv", kTableMessage,  HoldingTable, Setting("a.csv")},
        {"Utf16Table",         Leaves::OldOrNew, "a.csv", kTableMessage,  HoldingSavedTable, Setting("a.csv")},
        {"NewTable",           Leaves::OldOrNew, "n.csv", kTableMessage,  Nothing, Converting("n.csv")},
        {"TableWithHardLink",  Leaves::Copied,   "a.csv", kTableMessage,  HoldingLinked("a.csv"), Converting("a.csv")},
        {"PagedInFlatPart",    Leaves::Paged,    "a.frp", "a.frp", HoldingPages, Setting("a.frp")},
        {"PagedInPage",        Leaves::Paged,    "a.frp", "a.frp", HoldingPages, Setting("a.frp", "32770")},
        {"PagedAcrossPages",   Leaves::Paged,    "a.frp", "a.frp", HoldingPages, Setting("a.frp", "32000", "1500")},
        {"PagedNewTable",      Leaves::Paged,    "a.frp", "a.frp", HoldingPages, Setting("a.frp", "3000000")},
        {"PagedGrowsToFlatEnd",Leaves::Paged,    "a.frp", "a.frp", Holding("a.frp", 20), Setting("a.frp", "50")},
        {"NewPaged",           Leaves::OldOrNew, "n.frp", "file",         Nothing, Converting("n.frp", "32764")},
        {"PagedReplaced",      Leaves::OldOrNew, "a.frp", kRecipeMessage, HoldingPages, Converting("a.frp", "32764")},
        {"PagedWithHardLink",  Leaves::Copied,   "a.frp", kRecipeMessage, HoldingLinked("a.frp"), Converting("a.frp", "32764")},
        Patching("PatchInside", Leaves::InRuns, "a.rcp", Holding("a.rcp", 48),
                 R"({"address":1,"oldWords":"564F","newWords":"0001"})" "\n"
                 R"({"address":20,"oldWords":"665F","newWords":"0002"})" "\n"),
        Patching("PatchGrows", Leaves::InRuns, "a.rcp", Holding("a.rcp", 14),
                 R"({"address":1,"oldWords":"564F","newWords":"0001"})" "\n"
                 R"({"address":7,"newWords":"0002 0003"})" "\n"),
        Patching("PatchTable", Leaves::OldOrNew, "a.csv", HoldingSavedTable,
                 R"({"row":1,"column":2,"old":"5","new":"7"})" "\n"),
        Patching("PatchPages", Leaves::Paged, "a.frp", HoldingPages,
                 R"({"address":2,"oldWords":"645D","newWords":"0001"})" "\n"
                 R"({"address":32770,"oldWords":"6962","newWords":"0002"})" "\n"
                 R"({"address":100000,"newWords":"0003"})" "\n"),
        {"NewMerge",           Leaves::Emptied,  "m.rcp", "Merge file",   Nothing, Merging, 2},
        {"MergeOverAFile",     Leaves::Emptied,  "m.rcp", "Merge file",   Holding("m.rcp", 300), Merging, 2},
        {"NewLibrary",         Leaves::OldOrNew, "RecipeFile.Dat", kRecipeMessage, Nothing, Importing},
        {"Library",            Leaves::OldOrNew, "RecipeFile.Dat", kRecipeMessage, HoldingLibrary, Importing},
        {"LibraryAsLong",      Leaves::OldOrNew, "RecipeFile.Dat", kRecipeMessage, HoldingLibraryAsLong, Importing},
        {"LibraryWithHardLink",Leaves::Copied,   "RecipeFile.Dat", kRecipeMessage, HoldingLinkedLibrary, Importing},
        {"LibraryNotUnderstood", Leaves::OldOrNew, "RecipeFile.Dat", kRecipeMessage, Holding("RecipeFile.Dat", 700), Importing, 1, true},
        {"NewExport",          Leaves::OldOrNew, "out.json", kRecipeMessage, Nothing, Exporting},
        {"Export",             Leaves::OldOrNew, "out.json", kRecipeMessage, HoldingOwnExport, Exporting},
    };
    // clang-format on
    return paths;
}

const std::vector<SavePath>& TableSavePaths()
{
    constexpr const char* kProgram = VANTOR_TABLE_SAVE_PROGRAM;
    // clang-format off
    static const std::vector<SavePath> paths = {
        {"TableEdits",             Leaves::OldOrNew, "a.csv", kTableMessage, HoldingSavedTable, SavingEdits, 1, false, kProgram},
        {"TableEditsWithHardLink", Leaves::Copied,   "a.csv", kTableMessage, HoldingLinkedTable, SavingEdits, 1, false, kProgram},
        {"TablePutBack",           Leaves::OldOrNew, "a.csv", kTableMessage, HoldingTableToPutBack, PuttingBack, 1, false, kProgram},
        {"TablePutBackWithHardLink", Leaves::Copied, "a.csv", kTableMessage, HoldingLinkedTableToPutBack, PuttingBack, 1, false, kProgram},
    };
    // clang-format on
    return paths;
}

const std::vector<SavePath>& DocumentSavePaths()
{
    const auto around = HoldingRowsInPages("a.frp", 32700, 200); // the end of the flat part
    const auto table = HoldingRowsInPages("a.frp", 2096800, 10); // the end of the first table's last page but one
    // clang-format off
    static const std::vector<SavePath> paths = {
        OfDocument("AllInside",           "all",      Leaves::InPlace,  "a.rcp", HoldingRows("a.rcp", 20), "0", "20"),
        OfDocument("AllGrow",             "all",      Leaves::InPlace,  "a.rcp", HoldingRows("a.rcp", 9), "0", "20"),
        OfDocument("AllBehindTheEnd",     "all",      Leaves::InPlace,  "a.rcp", HoldingRows("a.rcp", 2), "20", "8"),
        OfDocument("AllInTable",          "all",      Leaves::OldOrNew, "a.csv", HoldingTable, "0", "4"),
        OfDocument("AllAcrossPages",      "all",      Leaves::Paged,    "a.frp", around, "32760", "1500"),
        OfDocument("EditedInside",        "edited",   Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 20), "0", "20"),
        OfDocument("EditedInOneRun",      "edited",   Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 20), "0", "3"),
        OfDocument("EditedGrow",          "edited",   Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 9), "0", "20"),
        OfDocument("EditedBehindTheEnd",  "edited",   Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 2), "20", "8"),
        OfDocument("EditedInTable",       "edited",   Leaves::OldOrNew, "a.csv", HoldingSavedTable, "0", "4"),
        OfDocument("EditedInFlatPart",    "edited",   Leaves::Paged,    "a.erp", HoldingRowsInPages("a.erp", 0, 20), "0", "20"),
        OfDocument("EditedBehindFlatPart", "edited",  Leaves::Paged,    "a.erp", HoldingRowsInPages("a.erp", 0, 20), "524280", "1500"),
        OfDocument("EditedInPages",       "edited",   Leaves::Paged,    "a.frp", HoldingRowsInPages("a.frp", 34000, 900), "34000", "900"),
        OfDocument("EditedNewPages",      "edited",   Leaves::Paged,    "a.frp", around, "32760", "1500"),
        OfDocument("EditedNewTable",      "edited",   Leaves::Paged,    "a.frp", table, "2096800", "1500"),
        OfDocument("PutBackInside",       "put-back", Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 20), "0", "20"),
        OfDocument("PutBackAndCut",       "put-back", Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 3), "0", "5"),
        OfDocument("CutAlone",            "put-back", Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 2), "8", "1"),
        OfDocument("PutBackBehindTheEnd", "put-back", Leaves::InRuns,   "a.rcp", HoldingRows("a.rcp", 2), "8", "4"),
        OfDocument("PutBackTable",        "put-back", Leaves::OldOrNew, "a.csv", HoldingTable, "0", "4"),
        OfDocument("PutBackInFlatPart",   "put-back", Leaves::Paged,    "a.erp", HoldingRowsInPages("a.erp", 0, 20), "0", "20"),
        OfDocument("PutBackInPages",      "put-back", Leaves::Paged,    "a.frp", around, "32751", "24"),
    };
    // clang-format on
    return paths;
}

const SavePath& CommandLineSavePath(std::string_view name)
{
    for (const SavePath& path : CommandLineSavePaths())
        if (path.name == name)
            return path;
    throw std::invalid_argument("no save path of this name");
}

std::optional<Bytes> BytesIn(const fs::path& path)
{
    return fs::exists(path) ? std::optional(ReadAll(path)) : std::nullopt;
}
