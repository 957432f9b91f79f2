#include "merge/SavePathRules.h"

#include <gtest/gtest.h>

#include <set>

namespace {

using Folders = std::set<std::u16string, std::less<>>;

struct StartCase {
    const char* name;
    const char16_t* executable;
    char16_t separator;
    Folders existing;
    const char16_t* folder;
    friend void PrintTo(const StartCase& c, std::ostream* out) { *out << c.name; }
};
struct StartFolder : testing::TestWithParam<StartCase> {};

TEST_P(StartFolder, IsThatOfTheExecutable)
{
    const auto exists = [](std::u16string_view folder) { return GetParam().existing.contains(folder); };
    EXPECT_EQ(ExecutableFolder(GetParam().executable, GetParam().separator, exists), GetParam().folder);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, StartFolder, testing::Values(
    //        name                    executable                  sep.   existing              folder
    StartCase{"LowerCased",           u"C:\\Tools\\Vantor.exe",   u'\\', {u"c:\\tools\\"},     u"c:\\tools\\"},
    StartCase{"LowerCasedSlash",      u"/Opt/Vantor/bin/Vantor",  u'/',  {u"/opt/vantor/bin/"}, u"/opt/vantor/bin/"},
    StartCase{"RealWhereCaseCounts",  u"/Opt/Vantor/vantor",      u'/',  {u"/Opt/Vantor/"},    u"/Opt/Vantor/"},
    StartCase{"LowerWhereBothExist",  u"/Opt/Bin/vantor",         u'/',  {u"/Opt/Bin/", u"/opt/bin/"}, u"/opt/bin/"},
    StartCase{"LowerWhereNoneExists", u"/Opt/Vantor/vantor",      u'/',  {},                   u"/opt/vantor/"},
    StartCase{"BeyondAscii",          u"D:\\ÄRZTE\\配方\\V.EXE",   u'\\', {},                   u"d:\\ärzte\\配方\\"},
    StartCase{"Root",                 u"/vantor",                 u'/',  {u"/"},               u"/"},
    StartCase{"NetworkPathStays",     u"\\\\Srv\\Share\\v.exe",   u'\\', {},                   u"\\\\srv\\share\\"},
    StartCase{"OtherSeparatorIsNone", u"/home/a\\B/vantor",       u'/',  {},                   u"/home/a\\b/"},
    StartCase{"NoFolder",             u"vantor",                  u'/',  {},                   u""},
    StartCase{"NoExecutable",         u"",                        u'/',  {},                   u""}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct ChosenCase {
    const char* name;
    const char16_t* path;
    char16_t separator;
    const char16_t* folder;
    friend void PrintTo(const ChosenCase& c, std::ostream* out) { *out << c.name; }
};
struct ChosenFolder : testing::TestWithParam<ChosenCase> {};

TEST_P(ChosenFolder, EndsInOneSeparator)
{
    EXPECT_EQ(FolderChosen(GetParam().path, GetParam().separator), GetParam().folder);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, ChosenFolder, testing::Values(
    //         name                path                     sep.    folder
    ChosenCase{"Folder",           u"D:\\Recipes",          u'\\',  u"D:\\Recipes\\"},
    ChosenCase{"FolderSlash",      u"/home/Recipes",        u'/',   u"/home/Recipes/"},
    ChosenCase{"DriveRoot",        u"D:\\",                 u'\\',  u"D:\\"},
    ChosenCase{"Root",             u"/",                    u'/',   u"/"},
    ChosenCase{"NetworkLosesOne",  u"\\\\server\\share",    u'\\',  u"\\server\\share\\"},  // kept
    ChosenCase{"NoFileSystem",     u"",                     u'\\',  u"\\"},
    ChosenCase{"NoFileSystemSlash",u"",                     u'/',   u"/"},
    ChosenCase{"OtherSeparator",   u"/a\\\\b",              u'/',   u"/a\\\\b/"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

struct ShownCase {
    const char* name;
    const char16_t* folder;
    const char16_t* typed;
    char16_t separator;
    const char16_t* path;
    friend void PrintTo(const ShownCase& c, std::ostream* out) { *out << c.name; }
};
struct PathShown : testing::TestWithParam<ShownCase> {};

TEST_P(PathShown, IsFolderAndNameAsTyped)
{
    EXPECT_EQ(ShownPath(GetParam().folder, GetParam().typed, GetParam().separator), GetParam().path);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, PathShown, testing::Values(
    //        name                  folder               typed       sep.    path
    ShownCase{"Name",               u"c:\\tools\\",      u"a",       u'\\',  u"c:\\tools\\a"},
    ShownCase{"NameSlash",          u"/opt/vantor/",     u"a",       u'/',   u"/opt/vantor/a"},
    ShownCase{"NoName",             u"c:\\tools\\",      u"",        u'\\',  u"c:\\tools\\"},
    ShownCase{"BlanksStay",         u"/opt/",            u" b ",     u'/',   u"/opt/ b "},
    ShownCase{"Root",               u"/",                u"a",       u'/',   u"/a"},
    ShownCase{"NoFolder",           u"",                 u"a",       u'/',   u"/a"},
    ShownCase{"NetworkLosesOne",    u"\\\\srv\\share\\", u"a",       u'\\',  u"\\srv\\share\\a"},      // kept
    ShownCase{"NameWithSeparator",  u"/opt/",            u"a/b",     u'/',   u"/opt/a/b"},
    ShownCase{"DoubleInTheName",    u"/opt/",            u"a//b",    u'/',   u"/opt/a/b"},
    ShownCase{"ThreeLeaveTwo",      u"/opt/",            u"/a",      u'/',   u"/opt//a"},              // kept
    ShownCase{"FourLeaveTwo",       u"/opt/",            u"//a",     u'/',   u"/opt//a"},              // kept
    ShownCase{"OtherSeparator",     u"/opt/",            u"a\\\\b",  u'/',   u"/opt/a\\\\b"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

constexpr const char16_t* kEmptyName = u"The file name can't be empty ,please input it!";
constexpr const char16_t* kIllegalName = u"the file isn't illegal ，please reinput it!";

struct NameCase {
    const char* name;
    const char16_t* typed;
    const char16_t* message; ///< null for a name that will do
    friend void PrintTo(const NameCase& c, std::ostream* out) { *out << c.name; }
};
struct MergeName : testing::TestWithParam<NameCase> {};

TEST_P(MergeName, IsChecked)
{
    const NameCase& row = GetParam();
    const auto wanted = row.message != nullptr ? std::optional<std::u16string>(row.message) : std::nullopt;
    EXPECT_EQ(MergeNameFault(row.typed), wanted);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, MergeName, testing::Values(
    //       name                 typed             message
    NameCase{"Empty",             u"",              kEmptyName},
    NameCase{"Blanks",            u" \t ",          kEmptyName},
    NameCase{"WideBlanks",        u"\u3000\u00A0",  kEmptyName},
    NameCase{"VerticalBar",       u"x|y",           kIllegalName},
    NameCase{"Backslash",         u"x\\y",          kIllegalName},
    NameCase{"DoubleQuote",       u"\"x",           kIllegalName},
    NameCase{"Asterisk",          u"*",             kIllegalName},
    NameCase{"Slash",             u"x/y",           kIllegalName},
    NameCase{"LessThan",          u"x<",            kIllegalName},
    NameCase{"GreaterThan",       u">x",            kIllegalName},
    NameCase{"QuestionMark",      u"x?",            kIllegalName},
    NameCase{"Colon",             u"x:y",           kIllegalName},
    NameCase{"IllegalInBlanks",   u" x:y ",         kIllegalName},
    NameCase{"Plain",             u"a",             nullptr},
    NameCase{"Dots",              u"x.y",           nullptr},
    NameCase{"OneDot",            u".",             nullptr},
    NameCase{"BlanksAround",      u" b ",           nullptr},
    NameCase{"BlankWithin",       u"a b",           nullptr},
    NameCase{"OtherMarks",        u"a'b;c,d&e%s",   nullptr},
    NameCase{"FullWidthColon",    u"x：y",          nullptr}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

TEST(MergeNameLength, HasNoLimit)
{
    EXPECT_EQ(MergeNameFault(std::u16string(100'000, u'a')), std::nullopt);
}

struct EndingCase {
    const char* name;
    const char16_t* path;
    const char16_t* result;
    friend void PrintTo(const EndingCase& c, std::ostream* out) { *out << c.name; }
};
struct RcpEnding : testing::TestWithParam<EndingCase> {};

TEST_P(RcpEnding, IsThereOnce)
{
    EXPECT_EQ(WithRcpEnding(GetParam().path), GetParam().result);
}

// clang-format off
INSTANTIATE_TEST_SUITE_P(Table, RcpEnding, testing::Values(
    //         name             path                  result
    EndingCase{"Missing",       u"/opt/a",            u"/opt/a.rcp"},
    EndingCase{"Another",       u"/opt/data.bin",     u"/opt/data.bin.rcp"},
    EndingCase{"ADotWithin",    u"/opt/x.y",          u"/opt/x.y.rcp"},
    EndingCase{"There",         u"/opt/a.rcp",        u"/opt/a.rcp"},
    EndingCase{"MixedCase",     u"/opt/Plan.Rcp",     u"/opt/Plan.Rcp"},
    EndingCase{"UpperCase",     u"/opt/PLAN.RCP",     u"/opt/PLAN.RCP"},
    EndingCase{"NoDot",         u"/opt/arcp",         u"/opt/arcp.rcp"},
    EndingCase{"BlankAfter",    u"/opt/ b ",          u"/opt/ b .rcp"},
    EndingCase{"EndingInBlank", u"/opt/a.rcp ",       u"/opt/a.rcp .rcp"},
    EndingCase{"OnlyTheEnding", u".rcp",              u".rcp"},
    EndingCase{"Short",         u"rcp",               u"rcp.rcp"},
    EndingCase{"Empty",         u"",                  u".rcp"}),
    [](const auto& c) { return std::string(c.param.name); });
// clang-format on

// From what is typed to the path that the dialog hands back.
TEST(SavePath, NameInTheExecutablesFolder)
{
    const auto always = [](std::u16string_view) { return true; };
    const std::u16string folder = ExecutableFolder(u"C:\\Program Files\\Vantor\\Vantor.exe", u'\\', always);
    EXPECT_EQ(WithRcpEnding(ShownPath(folder, u"a", u'\\')), u"c:\\program files\\vantor\\a.rcp");
}

TEST(SavePath, BlanksAroundTheNamePassAndStay)
{
    EXPECT_EQ(MergeNameFault(u" b "), std::nullopt);
    EXPECT_EQ(WithRcpEnding(ShownPath(u"/opt/", u" b ", u'/')), u"/opt/ b .rcp");
}

TEST(OverwriteQuestionText, NamesThePath)
{
    EXPECT_EQ(OverwriteQuestion(u"/opt/100%s.rcp"),
              u"The file /opt/100%s.rcp exist,\nMerge operation can empty the file content,continue?");
}

} // namespace
