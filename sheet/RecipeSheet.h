#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

// A recipe on paper: what stands there, whatever it is printed on. All texts are final, in one line each, in which
// every character can be seen (EscapedText.h).

/// A line of the head: "Start address", "RW100".
struct SheetFact {
    std::u16string label;
    std::u16string text;
};

/// What one column of the table says of its values.
struct SheetItem {
    std::u16string title;
    std::u16string unit;
    std::u16string range; ///< the sensible one; empty for none
};

/// A value as the table shows it.
struct SheetValue {
    std::u16string text;
    std::u16string meaning; ///< what the value is called, or the names of its set bits
    std::u16string warning; ///< "outside its limits 0 to 99"; empty when nothing is wrong
    bool isEdited = false;  ///< and not saved
};

/// One row of the table, which is one recipe.
struct SheetBlock {
    std::u16string title;           ///< "Row 1 (RW100)"
    std::vector<SheetValue> values; ///< one an item
};

/// A value that became another.
struct SheetChange {
    std::u16string row; ///< "1"
    std::u16string item;
    std::u16string oldText;
    std::u16string newText;
};

/// What changed since a version, or in comparison with another file.
struct SheetChanges {
    std::u16string since; ///< "oven-old.rcp"
    std::vector<SheetChange> changes;
    std::u16string further; ///< what is not listed, as a sentence; empty for nothing
};

struct RecipeSheet {
    std::u16string title;
    std::u16string file;     ///< its name; empty for a recipe without one
    std::u16string shortSha; ///< the beginning of that of the file; empty where there is none
    std::vector<SheetFact> facts;
    std::vector<SheetItem> items;
    std::vector<SheetBlock> blocks;
    std::optional<SheetChanges> changes;
};

/// How an item of a table of values is printed: columns that would be empty all over are left out.
struct SheetColumns {
    bool hasUnits = false;
    bool hasRanges = false;
    bool hasRemarks = false; ///< meanings and warnings
};

SheetColumns ColumnsOf(const RecipeSheet& sheet);

/// What stands in the column of remarks: the meaning, the warning after it, and that the value is not saved.
std::u16string RemarkOn(const SheetValue& value);

/// The sheet's parts, by the words that stand on it.
inline constexpr std::u16string_view kSheetItemTitle = u"Item";
inline constexpr std::u16string_view kSheetValueTitle = u"Value";
inline constexpr std::u16string_view kSheetUnitTitle = u"Unit";
inline constexpr std::u16string_view kSheetRangeTitle = u"Sensible range";
inline constexpr std::u16string_view kSheetRemarkTitle = u"Remark";
inline constexpr std::u16string_view kSheetRowTitle = u"Row";
inline constexpr std::u16string_view kSheetOldTitle = u"Old value";
inline constexpr std::u16string_view kSheetNewTitle = u"New value";
inline constexpr std::u16string_view kSheetNoRows = u"The table has no rows.";
inline constexpr std::u16string_view kSheetNoChanges = u"Nothing changed in these rows.";
inline constexpr std::u16string_view kSheetIssued = u"Issued by";
inline constexpr std::u16string_view kSheetApproved = u"Approved by";
inline constexpr std::u16string_view kSheetSignature = u"Name, date and signature";

/// "Changes since oven-old.rcp".
std::u16string ChangesTitle(const SheetChanges& changes);

/// What a sheet is printed on.
enum class SheetPaper { A4, Letter };
