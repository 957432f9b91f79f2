#include "changes/ChangeSyntax.h"
#include "changes/RecordPlaces.h"
#include "tests/support/Formats.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Answer = std::variant<TableCell, NoCell, ChangeFault>;

/// A table at word 100 with four rows of six words (a level, two temperatures, a text of two words, a level once more),
/// and one at 200 with two rows of one word.
struct RecordPlaces : testing::Test {
    RecordPlaces()
    {
        DataItem name = MakeItem(u"Name", DataType::String, 2, 4);
        name.unicode = 1;
        const DataFormat oven = MakeFormat(u"Oven", {MakeItem(u"Level", DataType::Signed16, 1, 4),
                                                     ArrayOf(MakeItem(u"Temp", DataType::Signed16, 1, 4, 1), 2), name,
                                                     MakeItem(u"Level", DataType::Signed16, 1, 4)});
        tables.push_back(MakeTable(oven, 100, 4));
        tables.push_back(MakeTable(MakeFormat(u"Words", {MakeItem(u"Word", DataType::Signed16, 1, 5)}), 200, 2));
    }

    Answer Find(const std::string& json) const
    {
        ChangeRecord record;
        EXPECT_FALSE(ChangeFromLine(json, record)) << json;
        return PlaceOf(record, {type, tables, ends});
    }

    void ExpectCell(const std::string& json, TableCell cell) const
    {
        const Answer answer = Find(json);
        ASSERT_TRUE(std::holds_alternative<TableCell>(answer)) << json;
        EXPECT_EQ(std::get<TableCell>(answer), cell) << json;
    }

    void ExpectNoCell(const std::string& json) const
    {
        EXPECT_TRUE(std::holds_alternative<NoCell>(Find(json))) << json;
    }

    void ExpectFault(const std::string& json, const std::u16string& key, const std::u16string& text) const
    {
        const Answer answer = Find(json);
        ASSERT_TRUE(std::holds_alternative<ChangeFault>(answer)) << json;
        EXPECT_EQ(std::get<ChangeFault>(answer).key, key) << json;
        EXPECT_EQ(std::get<ChangeFault>(answer).text, text) << json;
    }

    FileType type = FileType::Rcp;
    std::vector<FileTable> tables;
    std::vector<std::uint64_t> ends{400};
};

TEST_F(RecordPlaces, FindsTheCellOfARecordThatSaysAll)
{
    ExpectCell(R"_({"address":107,"row":2,"column":3,"item":"Temp(0)","oldWords":"0001","newWords":"0002"})_",
               {0, {1, 1}});
    ExpectCell(R"_({"address":201,"table":1,"row":2,"column":2,"item":"Word","oldWords":"0001","newWords":"0002"})_",
               {1, {1, 0}});
}

TEST_F(RecordPlaces, FindsItByRowAndAddressAlone)
{
    ExpectCell(R"_({"address":107,"row":2,"newWords":"0002"})_", {0, {1, 1}});
    ExpectFault(R"_({"address":107,"row":1,"newWords":"0002"})_", u"address", u"no value of that row begins there");
    ExpectFault(R"_({"address":150,"row":1,"newWords":"0002"})_", u"address", u"no value of that row begins there");
}

TEST_F(RecordPlaces, FindsItByRowAndItem)
{
    ExpectCell(R"_({"row":4,"item":"Temp(1)","new":"5"})_", {0, {3, 2}});
    ExpectFault(R"_({"row":4,"item":"Level","new":"5"})_", u"item", u"several columns have that title");
    ExpectFault(R"_({"row":4,"item":"level","new":"5"})_", u"item", u"no column has that title");
}

TEST_F(RecordPlaces, FindsItByAddressAlone)
{
    ExpectCell(R"_({"address":103,"new":"ab"})_", {0, {0, 3}});
    ExpectCell(R"_({"address":200,"new":"5"})_", {1, {0, 0}});
    ExpectFault(R"_({"address":104,"new":"5"})_", u"address", u"no value of the table begins there");
    ExpectFault(R"_({"address":124,"new":"5"})_", u"address", u"no value of the table begins there");
    ExpectFault(R"_({"address":103,"item":"Level","new":"5"})_", u"item", u"the title of that column is Name");
}

TEST_F(RecordPlaces, TakesWordsThatNoTableKnows)
{
    ExpectNoCell(R"_({"address":700,"oldWords":"0001 0002","newWords":"0003 0002"})_");
    ExpectNoCell(R"_({"address":102,"oldWords":"0001 0002","newWords":"0003 0002"})_");
    ExpectNoCell(R"_({"address":720,"zeros":1000})_");
    ExpectNoCell(R"_({"why":"form"})_");
}

TEST_F(RecordPlaces, RefusesWhatTheLayoutSaysOtherwise)
{
    ExpectFault(R"_({"address":108,"row":2,"column":3,"oldWords":"0001","newWords":"0002"})_", u"address",
                u"the value stands at RW107");
    ExpectFault(R"_({"address":107,"row":2,"column":3,"item":"Temp","oldWords":"0001","newWords":"0002"})_", u"item",
                u"the title of that column is Temp(0)");
    ExpectFault(R"_({"address":103,"row":1,"column":5,"oldWords":"0001","newWords":"0002"})_", u"newWords",
                u"the value has 2 words");
    ExpectFault(R"_({"address":102,"row":1,"column":4,"oldWords":"0001 0001","newWords":"0002 0001"})_", u"newWords",
                u"the value has 1 word");
    ExpectFault(R"_({"row":5,"column":2,"new":"5"})_", u"row", u"the last row of the table is 4");
    ExpectFault(R"_({"row":1,"column":7,"new":"5"})_", u"column", u"the last column of the table is 6");
    ExpectFault(R"_({"row":1,"column":2147483647,"new":"5"})_", u"column", u"the last column of the table is 6");
    ExpectFault(R"_({"table":2,"row":1,"column":2,"new":"5"})_", u"table", u"the file has no table 2");
    ExpectFault(R"_({"line":7,"new":"5"})_", u"line", u"only a .csv file has lines");
}

TEST_F(RecordPlaces, TakesAValueThatTheFileEndsWithin)
{
    ends = {208};
    ExpectCell(R"_({"address":103,"row":1,"column":5,"oldWords":"0001","newWords":"0002"})_", {0, {0, 3}});
}

TEST_F(RecordPlaces, TakesWordsOfAFormatThatIsNotKnown)
{
    tables = {{u"Gone", {}}};
    ExpectNoCell(R"_({"address":107,"row":2,"column":3,"item":"Temp","oldWords":"0001","newWords":"0002"})_");
    ExpectFault(R"_({"address":107,"row":2,"column":3,"new":"7"})_", u"table",
                u"there is no format Gone, which is needed");
    type = FileType::Csv;
    ExpectNoCell(R"_({"row":2,"column":3,"item":"Temp","old":"1","new":"2"})_");
    ExpectFault(R"_({"row":2,"item":"Temp","new":"7"})_", u"table", u"there is no format Gone, which is needed");
}

TEST_F(RecordPlaces, KnowsTheFieldsAndLinesOfATable)
{
    type = FileType::Csv;
    ExpectCell(R"_({"row":2,"column":3,"item":"Temp(0)","old":"1","new":"2"
})_",
               {0, {1, 1}});
    ExpectNoCell(R"_({"row":2,"column":9,"old":"1"})_");
    ExpectFault(R"_({"row":2,"column":9,"item":"Temp(0)","old":"1"
    })_",
                u"column", u"the last column of the table is 6");
    ExpectNoCell(R"_({"line":5,"old":"1"})_");
    ExpectFault(R"_({"line":4,"old":"1"})_", u"line",
                u"the last row of the table is 4, and that line is one of its rows");
    ExpectFault(R"_({"address":4,"new":"1"})_", u"address", u"a .csv file has no words");
    ExpectFault(R"_({"row":2,"column":3,"oldWords":"0001"})_", u"oldWords", u"a .csv file has no words");
}

} // namespace
