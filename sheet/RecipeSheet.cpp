#include "sheet/RecipeSheet.h"

#include <algorithm>

SheetColumns ColumnsOf(const RecipeSheet& sheet)
{
    SheetColumns columns;
    columns.hasUnits =
        std::any_of(sheet.items.begin(), sheet.items.end(), [](const SheetItem& item) { return !item.unit.empty(); });
    columns.hasRanges =
        std::any_of(sheet.items.begin(), sheet.items.end(), [](const SheetItem& item) { return !item.range.empty(); });
    const auto hasRemark = [](const SheetValue& value) {
        return !value.meaning.empty() || !value.warning.empty() || value.isEdited;
    };
    columns.hasRemarks = std::any_of(sheet.blocks.begin(), sheet.blocks.end(), [&](const SheetBlock& block) {
        return std::any_of(block.values.begin(), block.values.end(), hasRemark);
    });
    return columns;
}

std::u16string RemarkOn(const SheetValue& value)
{
    std::u16string remark = value.meaning;
    const auto add = [&remark](std::u16string_view text) {
        if (!remark.empty() && !text.empty())
            remark += u"; ";
        remark += text;
    };
    if (!value.warning.empty())
        add(u"! " + value.warning);
    if (value.isEdited)
        add(u"not saved");
    return remark;
}

std::u16string ChangesTitle(const SheetChanges& changes)
{
    return u"Changes since " + changes.since;
}
