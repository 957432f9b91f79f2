#include "recovery/VersionSetting.h"
#include "tests/support/TestFiles.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

#include <string_view>

namespace {

void WriteText(const std::filesystem::path& path, std::string_view text)
{
    WriteAll(path, std::as_bytes(std::span(text)));
}

struct VersionSetting : testing::Test {
    CVariable variable{"VANTOR_VERSIONS", nullptr};
    CTempFolder folder;
};

TEST_F(VersionSetting, IsOnAtFirst)
{
    EXPECT_TRUE(AreVersionsKept(folder.Path()));
    EXPECT_TRUE(AreVersionsKept(folder / "none"));
    EXPECT_TRUE(AreVersionsKept({}));
}

TEST_F(VersionSetting, IsKeptInAFileOfItsOwn)
{
    EXPECT_TRUE(SetVersionsKept(folder / "vantor", false));
    EXPECT_FALSE(AreVersionsKept(folder / "vantor"));
    EXPECT_TRUE(SetVersionsKept(folder / "vantor", true));
    EXPECT_TRUE(AreVersionsKept(folder / "vantor"));
    EXPECT_FALSE(ReadAll(folder / "vantor" / "versions.json").empty());
}

TEST_F(VersionSetting, IsReadAsWrittenByHand)
{
    WriteText(folder / "versions.json", "\n{ \"keep\" : false, \"other\": [1] }");
    EXPECT_FALSE(AreVersionsKept(folder.Path()));
}

TEST_F(VersionSetting, IsOnWhereItCannotBeUnderstood)
{
    for (const char* text : {"", "{", "[false]", "{\"keep\":0}", "false", "\xFF\xFE"}) {
        WriteText(folder / "versions.json", text);
        EXPECT_TRUE(AreVersionsKept(folder.Path())) << text;
    }
}

TEST_F(VersionSetting, IsOffByTheEnvironment)
{
    {
        const CVariable off("VANTOR_VERSIONS", "off");
        EXPECT_FALSE(AreVersionsKept(folder.Path()));
    }
    const CVariable other("VANTOR_VERSIONS", "on");
    EXPECT_TRUE(AreVersionsKept(folder.Path()));
    EXPECT_TRUE(SetVersionsKept(folder.Path(), false));
    EXPECT_FALSE(AreVersionsKept(folder.Path()));
}

TEST_F(VersionSetting, IsNotWrittenWhereThatIsImpossible)
{
    EXPECT_FALSE(SetVersionsKept({}, false));
    WriteText(folder / "file", "");
    EXPECT_FALSE(SetVersionsKept(folder / "file", false));
    std::filesystem::create_directory(folder / "versions.json");
    EXPECT_FALSE(SetVersionsKept(folder.Path(), false));
}

} // namespace
