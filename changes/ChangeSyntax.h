#pragma once

#include "changes/ChangeRecord.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// What is wrong in a line, and where.
struct ChangeFault {
    std::uint64_t line = 0; ///< counted from 1
    std::u16string key;     ///< "row" or "tables/0/rows" for example; empty where it is the line as a whole
    std::u16string text;
};

/// The fault in one line: "line 3, "row": an integer is expected".
std::u16string FaultText(const ChangeFault& fault);

/// Fills `header` from a line as AppendLine writes it, its keys in any order. It must have `vantor` and `version` and
/// may leave out the others. A fault has no line number yet; `header` is of no use then.
std::optional<ChangeFault> HeaderFromLine(std::string_view line, ChangeHeader& header);

/// Fills `record` from a line as AppendLine writes it, its keys in any order. It must say where (by `address`, by `row`
/// with `column` or `item`, or by `line`) and name a text, words or zeros, but for the one record of the form. A fault
/// has no line number yet; `record` is of no use then.
std::optional<ChangeFault> ChangeFromLine(std::string_view line, ChangeRecord& record);
