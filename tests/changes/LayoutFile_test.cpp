#include "changes/LayoutFile.h"
#include "changes/LayoutPattern.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"
#include "text/Utf8Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

void WriteText(const fs::path& path, std::string_view text)
{
    WriteAll(path, std::as_bytes(std::span(text)));
}

TEST(LayoutFile, SaysWhichTablesFilesHold)
{
    Layout layout;
    const auto fault = LayoutFromJson(R"({"library":"f/formats.json","tables":[
        {"files":"*.rcp","format":"Oven recipe","start":100,"rows":12},
        {"format":"Wörter","files":"line?/*.csv"}]})",
                                      layout);
    ASSERT_FALSE(fault) << ToUtf8(fault->place) << ToUtf8(fault->text);
    EXPECT_EQ(layout.library, fs::path("f/formats.json"));
    EXPECT_EQ(layout.tables, (std::vector<LayoutTable>{{u"*.rcp", u"Oven recipe", 100, 12},
                                                       {u"line?/*.csv", u"W\u00F6rter", 0, std::nullopt}}));
}

TEST(LayoutFile, NeedsNoLibraryAndNoTable)
{
    Layout layout;
    EXPECT_FALSE(LayoutFromJson(R"({"tables":[]})", layout));
    EXPECT_FALSE(layout.library);
    EXPECT_TRUE(layout.tables.empty());
}

struct FaultCase {
    const char* name;
    std::string json;
    const char16_t* place;
    const char16_t* text;
    friend void PrintTo(const FaultCase& c, std::ostream* out) { *out << c.name; }
};

struct LayoutFault : testing::TestWithParam<FaultCase> {};

TEST_P(LayoutFault, IsNamedWithItsPlace)
{
    Layout layout;
    const auto fault = LayoutFromJson(GetParam().json, layout);
    ASSERT_TRUE(fault);
    EXPECT_EQ(fault->place, GetParam().place) << ToUtf8(fault->place);
    EXPECT_EQ(fault->text, GetParam().text) << ToUtf8(fault->text);
}

/// A layout of one good table, and a second one with these fields.
std::string Second(const std::string& fields)
{
    return R"({"tables":[{"files":"a","format":"b"},{)" + fields + "}]}";
}

const FaultCase kFaults[] = {
    // clang-format off
    {"Empty", "", u"/", u"line 1, column 1 is no valid JSON"},
    {"NoJson", "{\n  tables", u"/", u"line 2, column 4 is no valid JSON"},
    {"MoreAfterIt", R"({"tables":[]} x)", u"/", u"line 1, column 15 is no valid JSON"},
    {"NoObject", "[]", u"/", u"an object is expected"},
    {"Null", "null", u"/", u"an object is expected"},
    {"Number", "7", u"/", u"an object is expected"},
    {"NoTables", R"({"library":"a"})", u"/tables", u"the field is missing"},
    {"UnknownField", R"({"libary":"a","tables":[]})", u"/libary", u"there is no field of this name"},
    {"UnknownFieldWithASlash", R"({"a/b~c":1})", u"/a~1b~0c", u"there is no field of this name"},
    {"LibraryIsANumber", R"({"library":1,"tables":[]})", u"/library", u"a text is expected"},
    {"LibraryIsAnObject", R"({"library":{},"tables":[]})", u"/library", u"a text is expected"},
    {"LibraryIsEmpty", R"({"library":"","tables":[]})", u"/library", u"the text is empty"},
    {"LibraryTwice", R"({"library":"a","library":"a"})", u"/library", u"the field stands twice"},
    {"TablesAreAnObject", R"({"tables":{}})", u"/tables", u"an array is expected"},
    {"TablesAreNull", R"({"tables":null})", u"/tables", u"an array is expected"},
    {"TableIsAText", R"({"tables":["a"]})", u"/tables/0", u"an object is expected"},
    {"TableIsAList", R"({"tables":[{"files":"a","format":"b"},[]]})", u"/tables/1", u"an object is expected"},
    {"UnknownFieldOfATable", Second(R"("row":1)"), u"/tables/1/row", u"there is no field of this name"},
    {"FieldTwice", Second(R"("rows":1,"rows":1)"), u"/tables/1/rows", u"the field stands twice"},
    {"NoFiles", Second(R"("format":"b")"), u"/tables/1/files", u"the field is missing"},
    {"NoFormat", Second(R"("files":"a")"), u"/tables/1/format", u"the field is missing"},
    {"FilesAreAList", Second(R"("files":["a"])"), u"/tables/1/files", u"a text is expected"},
    {"FilesAreEmpty", Second(R"("files":"")"), u"/tables/1/files", u"the text is empty"},
    {"FilesInThisFolder", Second(R"("files":"./a.rcp")"), u"/tables/1/files", u"no file has such a path"},
    {"FilesAbove", Second(R"("files":"a/../b.rcp")"), u"/tables/1/files", u"no file has such a path"},
    {"FilesAreAFolder", Second(R"("files":"a/")"), u"/tables/1/files", u"no file has such a path"},
    {"FilesWithoutAFolder", Second(R"("files":"a//b")"), u"/tables/1/files", u"no file has such a path"},
    {"ZeroCharacter", Second(R"("files":"a\u0000")"), u"/tables/1/files", u"the text holds a zero character"},
    {"HalfAPair", Second(R"("files":"\ud800")"), u"/tables/1/files", u"line 1, column 55 is no valid JSON"},
    {"NotUtf8", Second("\"files\":\"\xFF\""), u"/tables/1/files", u"line 1, column 49 is no valid JSON"},
    {"StartIsAText", Second(R"("start":"1")"), u"/tables/1/start", u"an integer is expected"},
    {"StartIsReal", Second(R"("start":1.0)"), u"/tables/1/start", u"an integer is expected"},
    {"StartIsBelowZero", Second(R"("start":-1)"), u"/tables/1/start", u"the number is not between 0 and 2147483647"},
    {"StartIsHuge", Second(R"("start":18446744073709551615)"), u"/tables/1/start",
     u"the number is not between 0 and 2147483647"},
    {"StartIsEndless", Second("\"start\":" + std::string(400, '9')), u"/tables/1/start",
     u"an integer is expected"},
    {"StartHasManyDigits", Second("\"start\":" + std::string(40, '9')), u"/tables/1/start",
     u"the number is not between 0 and 2147483647"},
    {"Exponent", Second(R"("start":1e999)"), u"/tables/1/start", u"an integer is expected"},
    {"NoRows", Second(R"("rows":0)"), u"/tables/1/rows", u"the number is not between 1 and 16777216"},
    {"TooManyRows", Second(R"("rows":16777217)"), u"/tables/1/rows", u"the number is not between 1 and 16777216"},
    {"RowsAreNull", Second(R"("rows":null)"), u"/tables/1/rows", u"an integer is expected"},
    {"RowsAreTrue", Second(R"("rows":true)"), u"/tables/1/rows", u"an integer is expected"},
    {"DeepNesting", std::string(1000000, '['), u"/", u"an object is expected"},
    {"DeepNestingInATable", Second("\"files\":" + std::string(1000000, '[')), u"/tables/1/files",
     u"a text is expected"},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(Table, LayoutFault, testing::ValuesIn(kFaults),
                         [](const auto& c) { return std::string(c.param.name); });

struct PatternCase {
    const char* name;
    const char16_t* pattern;
    const char16_t* path;
    bool isMatch;
    friend void PrintTo(const PatternCase& c, std::ostream* out) { *out << c.name; }
};

struct LayoutPattern : testing::TestWithParam<PatternCase> {};

TEST_P(LayoutPattern, Matches)
{
    EXPECT_EQ(IsMatch(GetParam().pattern, GetParam().path), GetParam().isMatch);
}

const PatternCase kPatterns[] = {
    // clang-format off
    {"Same", u"oven.rcp", u"oven.rcp", true},
    {"OtherCase", u"oven.rcp", u"Oven.rcp", false},
    {"Longer", u"oven.rcp", u"oven.rcp2", false},
    {"Shorter", u"oven.rcp", u"oven.rc", false},
    {"Star", u"*.rcp", u"oven.rcp", true},
    {"StarForNothing", u"*.rcp", u".rcp", true},
    {"StarAlone", u"*", u"a", true},
    {"StarGoesBack", u"*.rcp", u"a.rcp.rcp", true},
    {"TwoStars", u"*o*n*", u"oven", true},
    {"StarsInARow", u"a**b", u"ab", true},
    {"TwoStarsThatDoNotFit", u"*x*n", u"oven", false},
    {"OneAny", u"oven?.rcp", u"oven1.rcp", true},
    {"AnyForNothing", u"oven?.rcp", u"oven.rcp", false},
    {"AnyForAPair", u"?.rcp", u"\U0001F35E.rcp", true},
    {"TwoForAPair", u"??.rcp", u"\U0001F35E.rcp", false},
    {"StarBeforeAPair", u"*\U0001F35E", u"a\U0001F35F\U0001F35E", true},
    {"StarStopsAtAFolder", u"*.rcp", u"a/b.rcp", false},
    {"AnyStopsAtAFolder", u"a?b.rcp", u"a/b.rcp", false},
    {"Folder", u"a/*.rcp", u"a/b.rcp", true},
    {"AnyFolder", u"*/b.rcp", u"a/b.rcp", true},
    {"DeeperFolder", u"*/b.rcp", u"a/c/b.rcp", false},
    {"TwoStarsAreOne", u"**/b.rcp", u"a/c/b.rcp", false},
    {"StarPerFolder", u"*a/*b", u"xaa/yb", true},
    {"FromTheTop", u"/b.rcp", u"b.rcp", true},
    {"FromTheTopAlone", u"/b.rcp", u"a/b.rcp", false},
    {"Brackets", u"[ab].rcp", u"a.rcp", false},
    {"Backslash", u"a\\b", u"a/b", false},
    {"OtherScript", u"\u041F\u0435\u0447\u044C*", u"\u041F\u0435\u0447\u044C-\u4E00.rcp", true},
    // clang-format on
};

INSTANTIATE_TEST_SUITE_P(Table, LayoutPattern, testing::ValuesIn(kPatterns),
                         [](const auto& c) { return std::string(c.param.name); });

TEST(LayoutPatternTime, IsNoMoreThanTheProductOfTheLengths)
{
    std::u16string pattern;
    for (int i = 0; i < 1000; ++i)
        pattern += u"*a";
    EXPECT_FALSE(IsMatch(pattern + u"b", std::u16string(4000, u'a')));
}

/// A folder with layouts that are looked for, and the working folder in another.
struct LayoutPlaces : testing::Test {
    LayoutPlaces()
    {
        fs::create_directories(top / "a" / "b");
        fs::create_directories(top / "work" / "deep");
        fs::current_path(top / "work" / "deep");
    }
    ~LayoutPlaces() override { fs::current_path(before); }

    static std::vector<std::size_t> Tables(const std::vector<std::u16string>& patterns, const fs::path& layoutPath,
                                           const fs::path& file)
    {
        Layout layout;
        layout.path = layoutPath;
        for (const std::u16string& pattern : patterns)
            layout.tables.push_back({pattern, u"F", 0, {}});
        return TablesFor(layout, file);
    }

    using Indices = std::vector<std::size_t>;
    const fs::path before = fs::current_path();
    CTempFolder folder;
    const fs::path top = fs::canonical(folder.Path());
};

TEST_F(LayoutPlaces, AreAboveTheFileAndThenAboveTheWorkingFolder)
{
    for (const char* place : {"a/b", "", "work", "work/deep"})
        WriteText(top / place / kLayoutName, "{}");
    const std::vector<fs::path> expected = {top / "a/b" / kLayoutName, top / kLayoutName,
                                            top / "work/deep" / kLayoutName, top / "work" / kLayoutName};
    auto files = LayoutFilesFor(top / "a/b/x.rcp");
    files.resize(std::min<std::size_t>(files.size(), 4)); // there may be others above
    EXPECT_EQ(files, expected);
    auto relative = LayoutFilesFor("../../a/./b/x.rcp");
    relative.resize(std::min<std::size_t>(relative.size(), 4));
    EXPECT_EQ(relative, expected);
}

TEST_F(LayoutPlaces, MayBeAnythingOfThatName)
{
    fs::create_directory(top / "work/deep" / kLayoutName);
    EXPECT_EQ(LayoutFilesFor("x.rcp").front(), top / "work/deep" / kLayoutName);
    CRecordingReporter reporter;
    EXPECT_FALSE(ReadLayout(top / "work/deep" / kLayoutName, reporter));
    EXPECT_EQ(reporter.shown,
              (std::vector<std::u16string>{u"Open file " + PathText(top / "work/deep" / kLayoutName) + u" error!"}));
}

TEST_F(LayoutPlaces, NamesAreMatchedInAnyFolderBelow)
{
    const fs::path layout = top / kLayoutName;
    EXPECT_EQ(Tables({u"*.rcp", u"a/*.rcp", u"a/b/*.rcp", u"*/*/x.*"}, layout, top / "a/b/x.rcp"), (Indices{0, 2, 3}));
    EXPECT_EQ(Tables({u"*.rcp", u"a/*.rcp", u"/x.rcp", u"*.csv"}, layout, top / "x.rcp"), (Indices{0, 2}));
    EXPECT_EQ(Tables({u"a/*.rcp"}, layout, "../../a/x.rcp"), Indices{0});
}

TEST_F(LayoutPlaces, FileOutsideIsMatchedByItsName)
{
    const fs::path layout = top / "work" / kLayoutName;
    const fs::path file = top / "a/oven.rcp"; // as git hands it over
    EXPECT_EQ(Tables({u"*.rcp", u"line1/oven.rcp", u"line1/*.rcp", u"line1/*.csv"}, layout, file), (Indices{0, 1, 2}));
    EXPECT_EQ(Tables({u"*.rcp", u"line1/oven.rcp", u"line2/*.rcp"}, layout, file), Indices{0});
    EXPECT_EQ(Tables({u"line1/oven.rcp", u"line2/*.csv"}, layout, file), Indices{0});
    EXPECT_EQ(Tables({u"/oven.rcp"}, layout, file), Indices{0});
    EXPECT_EQ(Tables({u"*.csv"}, layout, file), Indices{});
}

TEST_F(LayoutPlaces, FolderWhoseNameBeginsTheSameIsOutside)
{
    EXPECT_EQ(Tables({u"x.rcp", u"b/x.rcp"}, top / "a" / kLayoutName, top / "ab/x.rcp"), (Indices{0, 1}));
    EXPECT_EQ(Tables({u"b/x.rcp"}, top / "a" / kLayoutName, top / "a/x.rcp"), Indices{});
}

TEST_F(LayoutPlaces, LibraryIsRelativeToTheLayout)
{
    CRecordingReporter reporter;
    WriteText(top / "a" / kLayoutName, R"({"library":"b/formats.json","tables":[]})");
    const auto layout = ReadLayout("../../a/.vantor.json", reporter);
    ASSERT_TRUE(layout);
    EXPECT_EQ(layout->library, fs::path("../../a/b/formats.json"));
    WriteText(kLayoutName, R"({"library":")" + (top / "f.dat").generic_string() + R"(","tables":[]})");
    EXPECT_EQ(ReadLayout(kLayoutName, reporter)->library, top / "f.dat");
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(LayoutPlaces, FaultIsToldWithFileAndPlace)
{
    CRecordingReporter reporter;
    WriteText("l.json", R"({"tables":[{"files":"a","format":"b","rows":0}]})");
    EXPECT_FALSE(ReadLayout("l.json", reporter));
    EXPECT_EQ(reporter.shown, (std::vector<std::u16string>{u"Layout error! File l.json, at /tables/0/rows: the number "
                                                           u"is not between 1 and 16777216!"}));
}

TEST_F(LayoutPlaces, SeveralMegabytesAreRead)
{
    std::string json = R"({"tables":[)";
    for (int i = 0; i < 50000; ++i)
        json += R"({"files":"folder/*)" + std::to_string(i) + R"(.rcp","format":"F","rows":3},)";
    json.back() = ']';
    WriteText(kLayoutName, json + '}');
    CRecordingReporter reporter;
    const auto layout = ReadLayout(top / "work/deep" / kLayoutName, reporter);
    ASSERT_TRUE(layout);
    EXPECT_EQ(TablesFor(*layout, "folder/49999.rcp").size(), 5u); // 49999, 9999, 999, 99, 9
    EXPECT_TRUE(reporter.shown.empty());
}

} // namespace
