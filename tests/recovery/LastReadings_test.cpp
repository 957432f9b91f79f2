#include "disk/File.h"
#include "recovery/LastReadings.h"
#include "tests/files/FileSizeLimit.h"
#include "tests/support/TestFiles.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

struct LastReadings : testing::Test {
    fs::path File() const { return folder / "vantor" / "readings.json"; }
    fs::path Recipe(int number) const { return folder / ("r" + std::to_string(number) + ".rcp"); }

    void Write(std::string_view text) const
    {
        fs::create_directories(folder / "vantor");
        WriteAll(File(), std::as_bytes(std::span(text)));
    }

    std::string Text() const
    {
        const Bytes bytes = ReadAll(File());
        return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
    }

    CTempFolder folder;
    CLastReadings readings{folder / "vantor"};
    const LastReading oven{u"Oven recipe", 100, 12};
    const LastReading mixer{u"Mixer \"2\" °", 0, 1};
};

} // namespace

TEST_F(LastReadings, AreFoundByTheRecipesPath)
{
    EXPECT_EQ(readings.Find(Recipe(1)), std::nullopt);
    EXPECT_TRUE(readings.Remember(Recipe(1), oven));
    EXPECT_TRUE(readings.Remember(Recipe(2), mixer));
    EXPECT_EQ(readings.Find(Recipe(1)), oven);
    EXPECT_EQ(readings.Find(Recipe(2)), mixer);
    EXPECT_EQ(readings.Find(folder / "x" / ".." / "r1.rcp"), oven);
    EXPECT_EQ(CLastReadings(folder / "vantor").Find(Recipe(2)), mixer);
    EXPECT_TRUE(readings.Remember(Recipe(1), mixer));
    EXPECT_EQ(readings.Find(Recipe(1)), mixer);
}

TEST_F(LastReadings, ArePrivate)
{
    ASSERT_TRUE(readings.Remember(Recipe(1), oven));
    ASSERT_TRUE(readings.Remember(Recipe(2), oven));
    EXPECT_EQ(fs::status(File()).permissions() & (fs::perms::group_all | fs::perms::others_all), fs::perms::none);
    EXPECT_EQ(fs::status(folder / "vantor").permissions() & (fs::perms::group_all | fs::perms::others_all),
              fs::perms::none);
}

TEST_F(LastReadings, LieInOneFileTheNewestFirst)
{
    ASSERT_TRUE(readings.Remember("/r/a \"b\".rcp", oven));
    ASSERT_TRUE(readings.Remember("/r/c.rcp", {u"M", 0, 1}));
    EXPECT_EQ(Text(), "{\"vantor\":\"readings\",\"version\":1,\"files\":[\n"
                      "{\"file\":\"/r/c.rcp\",\"format\":\"M\",\"start\":0,\"rows\":1},\n"
                      "{\"file\":\"/r/a \\\"b\\\".rcp\",\"format\":\"Oven recipe\",\"start\":100,\"rows\":12}\n"
                      "]}\n");
    EXPECT_FALSE(fs::exists(folder / "vantor" / "readings.json.lock"));
}

TEST_F(LastReadings, OfTheNewestThousandStay)
{
    std::string text = "{\"vantor\":\"readings\",\"version\":1,\"files\":[";
    for (int i = 0; i < 1000; ++i)
        text += (i ? "," : "") + std::string("{\"file\":") + '"' + Recipe(i).string() +
                "\",\"format\":\"A\",\"start\":1,\"rows\":2}";
    Write(text + "]}");
    EXPECT_EQ(readings.Find(Recipe(999)), (LastReading{u"A", 1, 2}));
    ASSERT_TRUE(readings.Remember(Recipe(1000), oven));
    EXPECT_EQ(readings.Find(Recipe(999)), std::nullopt);
    EXPECT_EQ(readings.Find(Recipe(998)), (LastReading{u"A", 1, 2}));
    ASSERT_TRUE(readings.Remember(Recipe(998), oven)); // and is the newest then
    ASSERT_TRUE(readings.Remember(Recipe(1001), oven));
    EXPECT_EQ(readings.Find(Recipe(998)), oven);
    EXPECT_EQ(readings.Find(Recipe(997)), std::nullopt);
}

TEST_F(LastReadings, OfOneRecipeCanBeForgotten)
{
    ASSERT_TRUE(readings.Remember(Recipe(1), oven));
    ASSERT_TRUE(readings.Remember(Recipe(2), mixer));
    EXPECT_TRUE(readings.Forget(Recipe(1)));
    EXPECT_EQ(readings.Find(Recipe(1)), std::nullopt);
    EXPECT_EQ(readings.Find(Recipe(2)), mixer);
    EXPECT_EQ(Text().find("r1.rcp"), std::string::npos);
}

TEST_F(LastReadings, ThatAreDamagedTellNothingAndAreKeptAside)
{
    const std::string good = "{\"file\":\"/r\",\"format\":\"A\",\"start\":1,\"rows\":2}";
    for (const std::string& damage :
         {std::string(), std::string("{"), std::string("[]"), std::string("{\"files\":[]}"), std::string(100'000, '['),
          std::string("{\"vantor\":\"readings\",\"version\":1}"), std::string("\xFF\xFE"),
          "{\"vantor\":\"readings\",\"version\":1,\"files\":[" + good + ",7]}",
          std::string("{\"vantor\":\"readings\",\"version\":1,\"files\":[{\"file\":\"/r\",\"format\":\"A\","
                      "\"start\":99999999999999999999,\"rows\":2}]}"),
          std::string(
              "{\"vantor\":\"readings\",\"version\":1,\"files\":[{\"file\":\"/r\",\"format\":\"A\",\"start\":-1,"
              "\"rows\":2}]}")}) {
        Write(damage);
        EXPECT_EQ(readings.Find("/r"), std::nullopt) << damage;
        EXPECT_EQ(Text(), damage) << "looking changes nothing";
        EXPECT_TRUE(readings.Remember(Recipe(1), oven)) << damage;
        EXPECT_EQ(readings.Find(Recipe(1)), oven) << damage;
        const Bytes aside = ReadAll(folder / "vantor" / "readings.json.damaged");
        EXPECT_EQ(aside.size(), damage.size());
    }
}

TEST_F(LastReadings, ThatAreDamagedStayAsideWhenTheDiskIsFull)
{
    const std::string damage = "{\"vantor\":\"readings\",\"version\":1,\"files\":[7]}";
    Write(damage);
    {
        const CFileSizeLimit limit(10);
        EXPECT_FALSE(readings.Remember(Recipe(1), oven));
    }
    EXPECT_FALSE(fs::exists(File())) << "nothing that counts as damaged the next time";
    EXPECT_TRUE(readings.Remember(Recipe(1), oven));
    EXPECT_EQ(ReadAll(folder / "vantor" / "readings.json.damaged").size(), damage.size());
}

TEST_F(LastReadings, StayWhenTheDiskIsFull)
{
    ASSERT_TRUE(readings.Remember(Recipe(1), oven));
    {
        const CFileSizeLimit limit(10);
        EXPECT_FALSE(readings.Remember(Recipe(2), mixer));
    }
    EXPECT_EQ(readings.Find(Recipe(1)), oven);
    EXPECT_EQ(readings.Find(Recipe(2)), std::nullopt);
}

TEST_F(LastReadings, OfALaterVersionOrSwitchedOffAreLeftAlone)
{
    for (const char* text : {"{\"vantor\":\"readings\",\"version\":2,\"files\":{}}",
                             "{\"vantor\":\"readings\",\"version\":1,\"keep\":false,\"files\":[{\"file\":\"/r\","
                             "\"format\":\"A\",\"start\":1,\"rows\":2}]}",
                             "{\"vantor\":\"readings\",\"keep\":false}"}) {
        Write(text);
        EXPECT_FALSE(readings.Remember(Recipe(1), oven));
        EXPECT_EQ(readings.Find(Recipe(1)), std::nullopt);
        EXPECT_EQ(readings.Find("/r"), std::nullopt);
        EXPECT_EQ(Text(), text);
    }
}

TEST_F(LastReadings, AreNoneWithoutAFolder)
{
    const CLastReadings none{{}};
    EXPECT_FALSE(none.Remember(Recipe(1), oven));
    EXPECT_EQ(none.Find(Recipe(1)), std::nullopt);
    WriteAll(folder / "file", BytesOf({1}));
    const CLastReadings inAFile(folder / "file");
    EXPECT_FALSE(inAFile.Remember(Recipe(1), oven));
    EXPECT_EQ(inAFile.Find(Recipe(1)), std::nullopt);
    EXPECT_FALSE(inAFile.Forget(Recipe(1)));
    fs::create_directories(File());
    EXPECT_FALSE(readings.Remember(Recipe(1), oven)) << "a folder has the file's name";
}

TEST_F(LastReadings, OfSeveralWindowsAddUp)
{
    std::vector<std::thread> windows;
    std::atomic<int> remembered = 0;
    for (int window = 0; window < 4; ++window)
        windows.emplace_back([&, window] {
            for (int i = 0; i < 10; ++i)
                remembered += CLastReadings(folder / "vantor").Remember(Recipe(10 * window + i), oven) ? 1 : 0;
        });
    for (std::thread& window : windows)
        window.join();
    EXPECT_EQ(remembered, 40);
    int found = 0;
    for (int i = 0; i < 40; ++i)
        found += readings.Find(Recipe(i)) == oven ? 1 : 0;
    EXPECT_GE(found, 30) << "a lock that is not had in time is gone without";
}
