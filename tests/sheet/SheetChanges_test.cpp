#include "changes/ChangeLines.h"
#include "sheet/SheetMaking.h"

#include <gtest/gtest.h>

namespace {

ChangeRecord InRow(std::int32_t row)
{
    ChangeRecord record;
    record.address = WordAddress(100 + row);
    record.row = row;
    record.column = 2;
    record.item = u"Level";
    record.oldText = u"1";
    record.newText = u"2";
    return record;
}

ChangeRecord OutsideAt(std::int64_t address)
{
    ChangeRecord record;
    record.address = WordAddress(address);
    record.oldWords = {std::byte{1}, std::byte{0}};
    return record;
}

} // namespace

TEST(SheetChanges, ListsThoseOfItsRowsAndKeepsAll)
{
    const std::optional<std::vector<std::int32_t>> rows(std::in_place, {0, 3});
    CSheetChanges changes(u"old.rcp", rows);
    std::string lines;
    AppendLine(ChangeHeader(), lines);
    changes.TakeHeader(ChangeHeader());
    for (const ChangeRecord& record : {InRow(1), InRow(2), InRow(4), OutsideAt(700), OutsideAt(800)}) {
        EXPECT_TRUE(changes.Take(record));
        AppendLine(record, lines);
    }
    EXPECT_EQ(changes.Records(), lines);
    const SheetChanges listed = changes.Changes();
    EXPECT_EQ(ChangesTitle(listed), u"Changes since old.rcp");
    ASSERT_EQ(listed.changes.size(), 2u);
    EXPECT_EQ(listed.changes[0].row, u"1");
    EXPECT_EQ(listed.changes[1].row, u"4");
    EXPECT_EQ(listed.changes[1].item, u"Level");
    EXPECT_EQ(listed.changes[1].oldText, u"1");
    EXPECT_EQ(listed.changes[1].newText, u"2");
    EXPECT_EQ(listed.further, u"Further: 1 change in other rows, 2 changes outside the table.");
}

TEST(SheetChanges, AllRowsNeedNothingFurther)
{
    const std::optional<std::vector<std::int32_t>> rows;
    CSheetChanges changes(u"a\nb", rows);
    ChangeRecord gone = InRow(9);
    gone.newText.reset();
    changes.Take(gone);
    const SheetChanges listed = changes.Changes();
    EXPECT_EQ(listed.since, u"a\\nb");
    EXPECT_EQ(listed.further, u"");
    EXPECT_EQ(listed.changes[0].newText, u"not in the file");
}

TEST(SheetChanges, MoreThanAnybodyReadsAreCounted)
{
    const std::optional<std::vector<std::int32_t>> rows;
    CSheetChanges changes(u"old.rcp", rows);
    for (std::int32_t row = 1; row <= 10'001; ++row)
        changes.Take(InRow(row));
    EXPECT_EQ(changes.Changes().changes.size(), 10'000u);
    EXPECT_EQ(changes.Changes().further, u"Further: 1 change that is not listed.");
}
