#include "changes/ChangeLines.h"
#include "files/PagedReader.h"
#include "files/PagedRecipeFile.h"
#include "files/RecipeFile.h"
#include "tests/cli/CliTest.h"
#include "tests/files/OrdinaryUser.h"
#include "tests/support/Formats.h"
#include "text/Utf8Text.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <random>
#include <sstream>
#include <sys/stat.h>
#include <tuple>

namespace fs = std::filesystem;

namespace {

using Arguments = std::vector<std::string>;

/// What a dry run printed.
struct Foretold {
    ChangeHeader header;
    std::vector<ChangeRecord> records;
};

Foretold ReadChanges(const std::string& lines)
{
    std::istringstream input(lines);
    CChangeReader reader(input);
    Foretold foretold;
    const auto header = reader.ReadHeader();
    if (const auto* read = std::get_if<ChangeHeader>(&header))
        foretold.header = *read;
    else
        ADD_FAILURE() << "no header in " << lines;
    for (auto next = reader.Next();; next = reader.Next()) {
        if (!std::holds_alternative<ChangeRecord>(next)) {
            EXPECT_TRUE(std::holds_alternative<EndOfChanges>(next)) << lines;
            return foretold;
        }
        foretold.records.push_back(std::get<ChangeRecord>(next));
    }
}

/// What a file of words that held `bytes` holds after the changes; each must find its old words.
Bytes Applied(Bytes bytes, const Foretold& foretold)
{
    const std::size_t before = bytes.size();
    EXPECT_EQ(foretold.header.bytes, std::ssize(bytes));
    bytes.resize(static_cast<std::size_t>(foretold.header.newBytes.value_or(0)));
    for (const ChangeRecord& record : foretold.records) {
        const auto at = 2 * static_cast<std::ptrdiff_t>(record.address->number);
        const std::size_t known = std::min(before, static_cast<std::size_t>(at) + record.newWords.size());
        if (!record.oldWords.empty()) {
            EXPECT_EQ(record.oldWords, WordRun(bytes.begin() + at, bytes.begin() + static_cast<std::ptrdiff_t>(known)));
        }
        std::copy(record.newWords.begin(), record.newWords.end(), bytes.begin() + at);
    }
    return bytes;
}

/// A format of numbers and a text, "All", in whose samples much is stored otherwise than it is shown: three rows from
/// word 1.
struct SetDryRun : CliTest {
    SetDryRun()
    {
        library.formats[0] = std::make_unique<DataFormat>(MakeFormat(
            u"All", {MakeItem(u"Speed", DataType::Unsigned16, 1, 3, 2), MakeItem(u"Steam", DataType::Float, 2, 3, 1),
                     MakeItem(u"Name", DataType::String, 1, 1), MakeItem(u"Trim", DataType::Signed16, 1, 3, 2)}));
        library.rowCount = 3;
        SaveLibrary();
        WriteAll(recipe, Sample());
    }

    static Bytes Sample()
    {
        return WordBytes({99, 105, 0xE76D, 0x3DFB, u'A', 115, 2000, 0, 0x4000, u'B', 5, 705, 0, 0x4100, u'C', 0, 99});
    }

    static Arguments Set(const fs::path& file, const Arguments& options)
    {
        Arguments arguments = {"set", file.string()};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return arguments;
    }

    /// Names, content and times of all files.
    std::vector<std::tuple<std::string, Bytes, std::int64_t, std::int64_t>> Files() const
    {
        std::vector<std::tuple<std::string, Bytes, std::int64_t, std::int64_t>> files;
        for (const auto& entry : fs::directory_iterator(folder.Path())) {
            struct stat status {};
            EXPECT_EQ(stat(entry.path().c_str(), &status), 0);
            const auto changed = [](const timespec& time) { return time.tv_sec * 1'000'000'000 + time.tv_nsec; };
            files.emplace_back(entry.path().filename().string(), ReadAll(entry.path()), changed(status.st_mtim),
                               changed(status.st_ctim));
        }
        return files;
    }

    ProcessResult DryRun(const fs::path& file, Arguments options) const
    {
        options.emplace_back("--dry-run");
        const auto before = Files();
        ProcessResult result = Run(Set(file, options));
        EXPECT_TRUE(Files() == before);
        return result;
    }

    void ExpectRefusedDryRun(const fs::path& file, const Arguments& options, const std::string& message) const
    {
        const ProcessResult result = DryRun(file, options);
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.out, "");
        EXPECT_EQ(result.error, message + "\n");
    }

    const fs::path table = folder / "t.csv";
};

TEST_F(SetDryRun, PrintsWhatASaveOfAllCellsWouldChange)
{
    const ProcessResult result = DryRun(recipe, {"--value", "2", "Speed", "1.15"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.out,
        R"({"vantor":"changes","version":1,"file":"a.rcp","type":"rcp","bytes":34,"newBytes":34,"tables":[{"format":"All","start":1,"rows":3}]}
{"address":1,"row":1,"column":2,"item":"Speed","old":"1.50","new":"1.50","oldWords":"0069","newWords":"0096","why":"decimals"}
{"address":2,"row":1,"column":3,"item":"Steam","old":"0.1","new":"0.1","oldWords":"E76D 3DFB","newWords":"CCCD 3DCC","why":"digits"}
{"address":5,"row":1,"column":5,"item":"Trim","old":"1.15","new":"1.15","reads":"1.14","oldWords":"0073","newWords":"0072","why":"decimals"}
{"address":6,"row":2,"column":2,"item":"Speed","old":"20.00","new":"1.15","reads":"1.14","oldWords":"07D0","newWords":"0072","why":"edited"}
{"address":10,"row":2,"column":5,"item":"Trim","old":"0.50","new":"0.50","oldWords":"0005","newWords":"0032","why":"decimals"}
{"address":11,"row":3,"column":2,"item":"Speed","old":"7.50","new":"7.50","oldWords":"02C1","newWords":"02EE","why":"decimals"}
)");
    EXPECT_EQ(result.error, recipe.string() + ": 5 values that are not set will be stored as shown. With --only-edited "
                                              "they stay as they are.\n");
}

TEST_F(SetDryRun, PrintsWhatWasSetAloneWithOnlyEdited)
{
    const ProcessResult result = DryRun(recipe, {"--change", "1", "Speed", "+0.1", "--only-edited"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(
        result.out,
        R"({"vantor":"changes","version":1,"file":"a.rcp","type":"rcp","bytes":34,"newBytes":34,"tables":[{"format":"All","start":1,"rows":3}]}
{"address":1,"row":1,"column":2,"item":"Speed","old":"1.50","new":"1.15","oldWords":"0069","newWords":"0073","why":"edited"}
)");
    EXPECT_EQ(result.error, "");
}

TEST_F(SetDryRun, OneValueIsToldAsOne)
{
    WriteAll(recipe, WordBytes({99, 105, 0, 0x4000, u'A', 0, 99}));
    const ProcessResult result = DryRun(recipe, {"--rows", "1", "--value", "1", "Name", "B"});
    EXPECT_EQ(result.error, recipe.string() +
                                ": 1 value that is not set will be stored as shown. With --only-edited it "
                                "stays as it is.\n");
}

TEST_F(SetDryRun, PrintsAHeaderAloneWhereNothingChanges)
{
    const ProcessResult result = DryRun(recipe, {"--cell", "2", "2", "20", "--only-edited"});
    EXPECT_EQ(result.exitCode, 0);
    EXPECT_EQ(ReadChanges(result.out).records, std::vector<ChangeRecord>());
    EXPECT_EQ(result.error, "");
}

TEST_F(SetDryRun, ACellWithoutWordsMakesNoFileLonger)
{
    library.formats[0]->items[0]->dataLength = 0;
    SaveLibrary();
    for (const char* name : {"short.rcp", "short.erp", "short.frp"}) {
        const fs::path path = folder / name;
        const Bytes before = WordBytes({99, 105});
        WriteAll(path, before);
        const Arguments options = {"--start", "600000", "--cell", "2", "2", "5", "--only-edited"};
        const Foretold foretold = ReadChanges(DryRun(path, options).out);
        EXPECT_EQ(foretold.header.newBytes, std::ssize(before)) << name;
        EXPECT_EQ(foretold.records, std::vector<ChangeRecord>()) << name;
        ExpectDone(Set(path, options));
        EXPECT_EQ(ReadAll(path), before) << name;
    }
}

TEST_F(SetDryRun, OfATableTellsItsFieldsAndItsSize)
{
    WriteAll(table, Utf16File(u"\"1\"\t\"2\"\t\"A\"\t0\r\n\"7\"\t\"2\"\t\"B\"\t\"0\"\tmore\r\n"));
    const Arguments options = {"--rows", "2", "--value", "1", "Name", "Z"};
    const ProcessResult all = DryRun(table, options);
    EXPECT_EQ(all.exitCode, 0);
    EXPECT_EQ(
        all.out,
        R"({"vantor":"changes","version":1,"file":"t.csv","type":"csv","bytes":76,"newBytes":70,"tables":[{"format":"All","start":1,"rows":2}]}
{"row":1,"column":4,"item":"Name","old":"A","new":"Z","why":"edited"}
{"row":1,"column":5,"item":"Trim","old":"0","new":"0","reads":"\"0\"","why":"quotes"}
{"row":2,"column":5,"item":"Trim","old":"0","new":"0","reads":"\"0\"","why":"quotes"}
{"row":2,"column":6,"old":"more","new":"","why":"rows"}
)");
    EXPECT_EQ(all.error, table.string() + ": 3 values that are not set will be stored as shown or dropped. With "
                                          "--only-edited they stay as they are.\n");
    Arguments alone = options;
    alone.emplace_back("--only-edited");
    const Foretold foretold = ReadChanges(DryRun(table, alone).out);
    EXPECT_EQ(foretold.header.newBytes, 76);
    EXPECT_EQ(foretold.records.size(), 1u);
}

TEST_F(SetDryRun, OfATableTellsWhatATabMoves)
{
    WriteAll(table, TextBytes("1\t2,3,A,0\r\n7,2,B,\"0\"\r\n"));
    const Arguments options = {"--rows", "2", "--value", "2", "Name", "Z"};
    const Foretold foretold = ReadChanges(DryRun(table, options).out);
    EXPECT_EQ(Run(Set(table, options)).exitCode, 0);
    const auto shown = nlohmann::json::parse(Run({"show", table.string(), "--rows", "2", "--json"}).out)["rows"];
    std::vector<std::string> moved;
    for (const ChangeRecord& record : foretold.records)
        if (record.row) {
            const std::string text = ToUtf8(record.reads.value_or(*record.newText));
            const auto row = static_cast<std::size_t>(*record.row - 1);
            EXPECT_EQ(shown[row]["cells"][static_cast<std::size_t>(*record.column - 2)], text);
            if (*record.row == 1)
                moved.push_back(text);
        }
    EXPECT_EQ(moved, (std::vector<std::string>{"1", "2", "3", "A"}));
}

TEST_F(SetDryRun, MakesNoPage)
{
    for (const auto& [name, flat] : {std::pair{"p.erp", 1048576}, {"p.frp", 65536}}) {
        const fs::path path = folder / name;
        WriteAll(path, Bytes(static_cast<std::size_t>(flat + 4096))); // with a directory, but no pages
        for (const char* form : {"--only-edited", "--dry-run"}) {
            const ProcessResult result = DryRun(path, {"--start", "700000", "--value", "2", "Name", "Z", form});
            EXPECT_EQ(result.exitCode, 0) << result.error;
            const Foretold foretold = ReadChanges(result.out);
            EXPECT_EQ(foretold.header.bytes, flat);
            EXPECT_GT(foretold.header.newBytes, 1400000);
            EXPECT_FALSE(foretold.records.empty());
        }
    }
}

TEST_F(SetDryRun, NeedsNoRightToWrite)
{
    ExpectDone({"convert", recipe.string(), table.string()});
    for (const char* name : {"p.erp", "p.frp"})
        ExpectDone({"convert", recipe.string(), (folder / name).string()});
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        fs::permissions(entry, static_cast<fs::perms>(0444));
    fs::permissions(folder.Path(), static_cast<fs::perms>(0555));
    {
        const COrdinaryUser user;
        for (const char* name : {"a.rcp", "t.csv", "p.erp", "p.frp"})
            for (const char* form : {"--only-edited", "--dry-run"}) {
                const ProcessResult result = DryRun(folder / name, {"--value", "2", "Name", "Z", form});
                EXPECT_EQ(result.exitCode, 0) << result.error;
                EXPECT_NE(result.out.find(R"("new":"Z")"), std::string::npos) << result.out;
            }
    }
    fs::permissions(folder.Path(), fs::perms::owner_all);
}

TEST_F(SetDryRun, IsRefusedWhereTheSaveWouldBe)
{
    WriteAll(table, TextBytes("1,2,A,0\r\n"));
    for (const Arguments& form : {Arguments{}, {"--only-edited"}}) {
        const auto with = [&form](Arguments options) {
            options.insert(options.end(), form.begin(), form.end());
            return options;
        };
        ExpectRefusedDryRun(recipe, with({"--cell", "1", "2", "x"}), "Col 1,Row 2 data error !");
        ExpectRefusedDryRun(recipe, with({"--change", "*", "Speed", "+999"}),
                            "Row 1, Speed: 1000.05 lies outside 0.00 to 655.35!");
        ExpectRefusedDryRun(recipe, with({"--value", "*", "Speed", "1", "--where", "Name", "Q"}),
                            "No row shows what was asked for! Nothing was changed!");
        ExpectRefusedDryRun(folder / "none.rcp", with({"--cell", "1", "2", "1"}),
                            "Open error! " + (folder / "none.rcp").string() + " doesn't exit!");
    }
    ExpectRefusedDryRun(table, {"--rows", "1", "--value", "1", "Name", "Z", "--only-edited"},
                        "Can't save only the edited cells of file " + table.string() + ": it is not UTF-16 text!");
    WriteAll(table, Utf16File(u"\"1\"\t\"2\"\t\"A\"\t0\r\n"));
    ExpectRefusedDryRun(table, {"--rows", "1", "--value", "1", "Name", "\"", "--only-edited"},
                        "Can't save only the edited cells of file " + table.string() +
                            ": the text of row 1, column 4 would not be read again as it is!");
    fs::remove(recipe);
    fs::create_directory(recipe);
    const ProcessResult result = Run(Set(recipe, {"--cell", "1", "2", "1", "--dry-run"}));
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "Open file " + recipe.string() + " error!\n");
}

TEST_F(SetDryRun, FullOutputIsReported)
{
    for (const char* form : {"--only-edited", "--dry-run"}) {
        const ProcessResult result = RunProcess(
            VANTOR_CLI_PROGRAM,
            {"set", "--library", libraryPath.string(), recipe.string(), "--cell", "1", "2", "1", form, "--dry-run"},
            "/dev/full");
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.error, "Can't write the output!\n");
    }
}

TEST_F(SetDryRun, ReaderThatHasGoneIsNoReasonForAMessage)
{
    const ProcessResult result = RunScript("\"$cli\" set \"$1\" --library \"$2\" --format W\xC3\xB6rter --rows 50000 "
                                           "--value '*' Word 7 --dry-run | true; exit ${PIPESTATUS[0]}",
                                           {recipe.string(), libraryPath.string()});
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_EQ(result.error, "");
}

/// Random settings of a file with random content.
class SetDryRunOf : public SetDryRun, public testing::WithParamInterface<const char*> {
protected:
    int Below(int count) { return std::uniform_int_distribution<int>(0, count - 1)(m_random); }

    Bytes RandomWords()
    {
        Bytes words(static_cast<std::size_t>(2 * Below(20)));
        std::generate(words.begin(), words.end(), [this] { return std::byte(Below(3) == 0 ? Below(256) : 0); });
        return words;
    }

    Bytes RandomTable()
    {
        std::u16string text;
        for (int line = Below(5); line > 0; --line) {
            for (int field = Below(6); field > 0; --field)
                text += u'"' + std::u16string(1, static_cast<char16_t>(u'0' + Below(10))) + u'"' +
                        (field > 1 ? u"\t" : u"");
            text += u"\r\n";
        }
        return Utf16File(text);
    }

    void MakeFile()
    {
        const Bytes words = RandomWords();
        if (path.extension() == ".csv")
            WriteAll(path, RandomTable());
        else
            WriteAll(path, words);
        if (path.extension() == ".rcp" || path.extension() == ".csv")
            return;
        WriteAll(recipe, words);
        fs::remove(path);
        ExpectDone({"convert", recipe.string(), path.string()});
    }

    Arguments RandomSetting()
    {
        const std::string start = path.extension() == ".frp" && Below(2) == 0 ? "32766" : std::to_string(Below(4));
        Arguments options = {"--start", start};
        for (int i = Below(4); i >= 0; --i) {
            const std::string rows = std::to_string(1 + Below(3));
            const char* const items[] = {"Speed", "Steam", "Trim"};
            const char* const texts[] = {"1.1", "0", "", "20", "7.5"};
            const bool isName = Below(4) == 0;
            options.insert(options.end(),
                           {"--value", rows, isName ? "Name" : items[Below(3)],
                            isName ? std::string(1, static_cast<char>('a' + Below(26))) : texts[Below(5)]});
        }
        return options;
    }

    /// The bytes of the file; of a paged one, of its logical content.
    Bytes Content() const
    {
        const auto type = *FileTypeOf(path);
        if (!IsPaged(type))
            return ReadAll(path);
        Bytes bytes(LogicalBytes(type, path).value_or(0));
        CPagedReader file;
        EXPECT_TRUE(file.Open(path, KindOf(type)) && file.Read(WordAddress(0), bytes));
        return bytes;
    }

    /// The texts of the cells.
    nlohmann::json Cells(const Arguments& setting) const
    {
        nlohmann::json cells = nlohmann::json::array();
        const auto shown = nlohmann::json::parse(Run({"show", path.string(), "--json", setting[0], setting[1]}).out);
        for (const auto& row : shown.at("rows"))
            cells.push_back(row.at("cells"));
        return cells;
    }

    /// What the run printed and told must be what the real run then does.
    void ExpectTrue(const ProcessResult& foretold, const Arguments& options)
    {
        const Bytes before = Content();
        nlohmann::json cells = Cells(options);
        const ProcessResult real = Run(Set(path, options));
        EXPECT_EQ(foretold.exitCode, real.exitCode);
        EXPECT_EQ(Replaced(foretold.error,
                           {{"are not set will be", "were not set were"}, {"is not set will be", "was not set was"}}),
                  real.error);
        if (real.exitCode != 0) {
            EXPECT_EQ(foretold.out, "");
            EXPECT_EQ(Content(), before);
            return;
        }
        ++m_saved;
        const Foretold changes = ReadChanges(foretold.out);
        EXPECT_EQ(changes.header.newBytes, std::ssize(Content()));
        if (path.extension() == ".csv")
            ExpectTexts(changes, std::move(cells), options);
        else
            EXPECT_EQ(Applied(before, changes), Content());
    }

    /// The table shows the texts of the changes in their cells, and in all others the former ones, `cells`.
    void ExpectTexts(const Foretold& changes, nlohmann::json cells, const Arguments& options) const
    {
        for (const ChangeRecord& record : changes.records)
            if (record.row && record.item)
                cells[static_cast<std::size_t>(*record.row - 1)][static_cast<std::size_t>(*record.column - 2)] =
                    ToUtf8(record.reads.value_or(*record.newText));
        EXPECT_EQ(cells, Cells(options));
    }

    static std::string Replaced(std::string text, const std::vector<std::pair<std::string, std::string>>& words)
    {
        for (const auto& [from, to] : words)
            if (const auto at = text.find(from); at != std::string::npos)
                text.replace(at, from.size(), to);
        return text;
    }

    std::mt19937 m_random{7};
    int m_saved = 0; ///< rounds that were not refused
    const fs::path path = folder / GetParam();
};

TEST_P(SetDryRunOf, RandomSettingsIsWhatTheRealRunDoes)
{
    for (int round = 0; round < 40; ++round) {
        SCOPED_TRACE(round);
        MakeFile();
        Arguments options = RandomSetting();
        if (Below(2) == 0)
            options.emplace_back("--only-edited");
        ExpectTrue(DryRun(path, options), options);
    }
    EXPECT_GE(m_saved, 20);
}

INSTANTIATE_TEST_SUITE_P(Types, SetDryRunOf, testing::Values("r.rcp", "r.csv", "r.erp", "r.frp"),
                         [](const auto& c) { return std::string(c.param).substr(2); });

} // namespace
