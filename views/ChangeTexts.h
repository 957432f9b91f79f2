#pragma once

#include "changes/ChangeRecord.h"
#include "model/ColumnCoding.h"

#include <QString>

#include <array>
#include <cstddef>

// A change in words for people.

enum class ChangeColumn { Address, Row, Item, Old, New, Why };

/// The texts of a change in the order of the columns, each in one line.
using ChangeTexts = std::array<QString, 6>;

/// A value longer than `most` units, or words, is cut off and ends in "…". Texts that are alike though the words differ
/// have these after them. With the column of the change's cell its values have what its notes say of them: "240.0 °C",
/// "0 = off".
ChangeTexts TextsOf(const ChangeRecord& change, std::size_t most, const ColumnCoding* column = nullptr);

/// Why a save changes a value, in a sentence.
QString ReasonSentence(ChangeReason reason);
