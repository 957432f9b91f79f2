#pragma once

#include "changes/ChangeList.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// A list of changes that a test makes.
class CFakeChanges final : public CChangeList {
public:
    std::size_t Count() const override { return records.size(); }
    ChangeRecord At(std::size_t index) const override { return records.at(index); }
    ChangeHeader Header() const override { return header; }
    bool IsComplete() const override { return isComplete; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override
    {
        const ChangeRecord& record = records.at(index);
        if (!record.row || !record.column)
            return std::nullopt;
        return CellPlace{*record.row - 1, static_cast<std::uint32_t>(*record.column - 2)};
    }

    ChangeHeader header;
    std::vector<ChangeRecord> records;
    bool isComplete = true;
};

/// So many changes of one column, of which row N was N and becomes N + 1. Counts how often a change was made.
class CManyChanges final : public CChangeList {
public:
    explicit CManyChanges(std::size_t changes) : count(changes) {}

    std::size_t Count() const override { return count; }
    ChangeRecord At(std::size_t index) const override
    {
        ++made;
        const auto number = static_cast<std::int32_t>(index);
        ChangeRecord record;
        record.address = WordAddress(100 + number);
        record.row = number + 1;
        record.column = 2;
        record.item = u"No.";
        const std::string text = std::to_string(number + 1);
        record.oldText = std::u16string(text.begin(), text.end());
        record.newText = *record.oldText + u".5";
        record.oldWords = {std::byte{1}, std::byte{0}};
        record.newWords = {std::byte{2}, std::byte{0}};
        record.why = ChangeReason::Decimals;
        return record;
    }
    ChangeHeader Header() const override { return {.file = u"many.rcp", .type = FileType::Rcp}; }
    bool IsComplete() const override { return isComplete; }
    std::optional<CellPlace> PlaceOf(std::size_t index) const override
    {
        return CellPlace{static_cast<std::int32_t>(index), 0};
    }

    std::size_t count;
    bool isComplete = true;
    mutable std::size_t made = 0;
};
