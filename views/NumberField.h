#pragma once

#include "text/Decimal.h"

#include <optional>

class QLabel;
class QLineEdit;

/// The number that `field` holds in full. Where it holds none, `notice` says so, and what to do about a comma, and the
/// field has the focus, its text selected.
std::optional<CDecimal> TakeNumber(QLineEdit& field, QLabel& notice);
