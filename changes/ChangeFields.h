#pragma once

#include "changes/ChangeRecord.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

// The keys of a header, of its tables and of a record, and what they may hold.

/// What a line is read into: one of the two, by its fields.
struct ChangeDraft {
    ChangeHeader header;
    ChangeRecord record;
};

struct NumberRange {
    std::int64_t least;
    std::int64_t most;
};

/// A key of an object, and what is done with its value: one of the two, or neither for a list of tables. The answer is
/// what is wrong with the value, empty when nothing is.
struct ChangeField {
    std::u16string_view key;
    std::u16string (*setText)(ChangeDraft& draft, const std::u16string& text) = nullptr;
    std::u16string (*setNumber)(ChangeDraft& draft, std::int64_t number) = nullptr;
    NumberRange range = {}; ///< of the number
    bool isRequired = false;
};

using ChangeFields = std::span<const ChangeField>;

ChangeFields FieldsOfHeader();
ChangeFields FieldsOfTable(); ///< they fill the last table of the header
ChangeFields FieldsOfRecord();

/// The field of that key; null when there is none.
const ChangeField* FindChangeField(ChangeFields fields, std::u16string_view key);
