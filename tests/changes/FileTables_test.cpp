#include "changes/FileTables.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

namespace {

DataFormat OneWord()
{
    return MakeFormat(u"Word", {MakeItem(u"Word", DataType::Signed16, 1, 5)});
}

DataFormat ThreeWords()
{
    return MakeFormat(u"Three", {MakeItem(u"A", DataType::Signed16, 1, 5), MakeItem(u"B", DataType::Signed32, 2, 5)});
}

using Zones = std::vector<std::pair<int, std::pair<std::uint64_t, std::uint64_t>>>;

/// By table, -1 for words outside, and bytes.
Zones ZonesIn(const std::vector<FileTable>& tables, std::uint64_t bytes)
{
    Zones zones;
    for (const FileZone& zone : ZonesOf(tables, bytes))
        zones.push_back({zone.table ? static_cast<int>(*zone.table) : -1, {zone.begin, zone.end}});
    return zones;
}

TEST(FileTables, WordsWithoutATableAreOneZone)
{
    EXPECT_EQ(ZonesIn({}, 100), (Zones{{-1, {0, 100}}}));
    EXPECT_EQ(ZonesIn({}, 0), Zones{});
}

TEST(FileTables, TablesStandInTheOrderOfTheirBegins)
{
    const std::vector<FileTable> tables = {MakeTable(ThreeWords(), 20, 2), MakeTable(OneWord(), 2, 3)};
    EXPECT_EQ(ZonesIn(tables, 101),
              (Zones{{-1, {0, 4}}, {1, {4, 10}}, {-1, {10, 40}}, {0, {40, 52}}, {-1, {52, 101}}}));
}

TEST(FileTables, ATableGoesOnBehindTheEndAndNoneBeginsThere)
{
    const std::vector<FileTable> tables = {MakeTable(ThreeWords(), 20, 2), MakeTable(OneWord(), 30, 1)};
    EXPECT_EQ(ZonesIn(tables, 42), (Zones{{-1, {0, 40}}, {0, {40, 52}}}));
    EXPECT_EQ(ZonesIn(tables, 40), (Zones{{-1, {0, 40}}}));
}

TEST(FileTables, WordsInTwoTablesAreInTwoZones)
{
    const std::vector<FileTable> tables = {MakeTable(OneWord(), 0, 10), MakeTable(OneWord(), 2, 2)};
    EXPECT_EQ(ZonesIn(tables, 30), (Zones{{0, {0, 20}}, {1, {4, 8}}, {-1, {20, 30}}}));
}

TEST(FileTables, AFormatWithoutWordsHasNoZone)
{
    EXPECT_EQ(ZonesIn({MakeTable(DataFormat(u"None"), 0, 5)}, 10), (Zones{{-1, {0, 10}}}));
}

TEST(FileTables, CountsTheWholeRowsThatAFileHolds)
{
    EXPECT_EQ(WholeRows(ThreeWords(), 0, 0), 0);
    EXPECT_EQ(WholeRows(ThreeWords(), 0, 5), 0);
    EXPECT_EQ(WholeRows(ThreeWords(), 0, 6), 1);
    EXPECT_EQ(WholeRows(ThreeWords(), 1, 19), 2);
    EXPECT_EQ(WholeRows(ThreeWords(), 100, 19), 0);
    EXPECT_EQ(WholeRows(DataFormat(u"None"), 0, 100), 0);
}

TEST(FileTables, NamesTheTablesForAHeader)
{
    const std::vector<FileTable> tables = {MakeTable(ThreeWords(), 20, 2), MakeTable(OneWord(), 2, 3)};
    EXPECT_EQ(NamesOf(tables),
              (std::vector<ChangedTable>{{u"Three", WordAddress(20), 2}, {u"Word", WordAddress(2), 3}}));
}

} // namespace
