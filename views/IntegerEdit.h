#pragma once

#include <QString>

class QLineEdit;

/// Has `edit` take whole numbers only: digits, after at most one minus. Of what is typed or pasted the first number is
/// taken ("RW140" is 140); what holds none leaves the field as it was. Digits of other scripts become the ASCII ones.
void TakeIntegersOnly(QLineEdit& edit);

/// The first whole number in `text`: "140" in " rw140\n", "7" in "7.9", "-5" in " -5". Only a minus that `text` begins
/// with is one: the one in "RW-5" is a hyphen. Without a digit "-" or nothing.
QString FirstInteger(const QString& text);
