#include "changes/ChangeFile.h"
#include "changes/ChangeLines.h"
#include "tests/support/FakeChanges.h"
#include "tests/support/RecordingReporter.h"
#include "tests/support/TestFiles.h"
#include "text/PathText.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <iterator>

namespace fs = std::filesystem;

namespace {

/// Does something with each piece of work that is told.
class CActingProgress final : public CProgress {
public:
    explicit CActingProgress(std::function<bool()> act) : m_act(std::move(act)) {}
    bool Advance(std::uint64_t, std::uint64_t) override { return m_act(); }

private:
    std::function<bool()> m_act;
};

struct ChangeFile : testing::Test {
    ChangeFile()
    {
        changes.header = {.file = u"oven.rcp", .type = FileType::Rcp, .bytes = 1440, .newBytes = 1440};
        changes.records = {{.address = WordAddress(129),
                            .row = 1,
                            .column = 11,
                            .item = u"Belt m/min",
                            .oldText = u"1.50",
                            .newText = u"1.50",
                            .oldWords = WordBytes({0x69}),
                            .newWords = WordBytes({0x96}),
                            .why = ChangeReason::Decimals},
                           {.address = WordAddress(720), .zeros = 1000}};
    }

    Outcome Save() { return SaveChanges(changes, path, reporter, progress); }

    CFakeChanges changes;
    CTempFolder folder;
    fs::path path = folder / "oven.jsonl";
    CRecordingReporter reporter;
    CNoProgress progress;
};

std::size_t FilesIn(const fs::path& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

} // namespace

TEST_F(ChangeFile, HoldsTheHeaderAndALineAChange)
{
    EXPECT_EQ(Save(), Outcome::Done);
    std::string lines;
    AppendLine(changes.header, lines);
    AppendLine(changes.records[0], lines);
    AppendLine(changes.records[1], lines);
    const Bytes bytes = ReadAll(path);
    EXPECT_EQ(std::string(reinterpret_cast<const char*>(bytes.data()), bytes.size()), lines);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(ChangeFile, IsReadAgainWhateverItsLength)
{
    const CManyChanges many(20'000); // some pieces
    EXPECT_EQ(SaveChanges(many, path, reporter, progress), Outcome::Done);
    std::ifstream input(path, std::ios::binary);
    CChangeReader reader(input);
    const auto header = reader.ReadHeader();
    ASSERT_TRUE(std::holds_alternative<ChangeHeader>(header));
    EXPECT_EQ(std::get<ChangeHeader>(header), many.Header());
    for (std::size_t i = 0; i < many.Count(); ++i) {
        const auto next = reader.Next();
        ASSERT_TRUE(std::holds_alternative<ChangeRecord>(next)) << i;
        ASSERT_EQ(std::get<ChangeRecord>(next), many.At(i)) << i;
    }
    EXPECT_TRUE(std::holds_alternative<EndOfChanges>(reader.Next()));
}

TEST_F(ChangeFile, TakesThePlaceOfAnOlderOne)
{
    WriteAll(path, UnitBytes(std::u16string(500'000, u'x')));
    EXPECT_EQ(Save(), Outcome::Done);
    EXPECT_LT(fs::file_size(path), 1000U);
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
}

TEST_F(ChangeFile, ThatCannotBeMadeIsReportedOnce)
{
    path = folder / "none" / "oven.jsonl";
    EXPECT_EQ(Save(), Outcome::Failed);
    EXPECT_EQ(reporter.shown, std::vector{u"Can't save file " + PathText(path) + u",please check file or your disk!"});
}

TEST_F(ChangeFile, GivenUpLeavesTheOldOneAsItWas)
{
    const Bytes old = WordBytes({1, 2, 3});
    WriteAll(path, old);
    const CManyChanges many(20'000);
    int calls = 0;
    CActingProgress stop([&calls] { return ++calls < 2; });
    EXPECT_EQ(SaveChanges(many, path, reporter, stop), Outcome::GivenUp);
    EXPECT_EQ(ReadAll(path), old);
    EXPECT_EQ(FilesIn(folder.Path()), 1U);
    EXPECT_TRUE(reporter.shown.empty());
}

TEST_F(ChangeFile, OfAListThatBecomesShorterIsNotMade)
{
    CManyChanges many(20'000);
    CActingProgress shorten([&many] {
        many.count = 3;
        return true;
    });
    EXPECT_EQ(SaveChanges(many, path, reporter, shorten), Outcome::Failed);
    EXPECT_EQ(FilesIn(folder.Path()), 0U);
    EXPECT_EQ(reporter.shown.size(), 1U);
}
