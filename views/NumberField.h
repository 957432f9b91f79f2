#pragma once

#include "text/Decimal.h"

#include <QString>

#include <optional>

class QLabel;
class QLineEdit;

/// What is wrong with the text of a number; empty for a number. Blanks around it do not count.
QString NumberFault(const QString& text);

/// The number that `field` holds in full. Where it holds none, `notice` says so, and what to do about a comma, and the
/// field has the focus, its text selected.
std::optional<CDecimal> TakeNumber(QLineEdit& field, QLabel& notice);
