#pragma once

#include <QColor>

/// How well one colour can be read on the other: 1 not at all, 21 black on white. Text needs 4.5, the outline of a
/// control 3.
double Contrast(const QColor& one, const QColor& other);
