#pragma once

#include "model/ColumnCoding.h"
#include "tests/fuzz/FuzzInput.h"

/// A column as a library file may give it, of at most 6 words a value.
ColumnCoding TakeColumn(CFuzzInput& input);
