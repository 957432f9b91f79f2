#pragma once

#include "model/ColumnCoding.h"
#include "model/ItemNotes.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

/// What is wrong with texts for single values.
struct ValueTextFault {
    std::size_t index = 0; ///< of the first that is wrong
    std::u16string text;   ///< for the user, with its full stop
};

/// The first of `texts` that says nothing of a value of the column: one without value or text, whose value the column
/// cannot store, whatever its limits, or that names a value once more. Nothing when all are well; one of which both are
/// empty is no text.
std::optional<ValueTextFault> FindValueTextFault(const ColumnCoding& coding, const std::vector<ValueText>& texts);
