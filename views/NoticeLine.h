#pragma once

#include <QString>

#include <initializer_list>

class QLabel;
class QWidget;

/// Shows `text` in `line`, a line of a dialog that is hidden while there is nothing to say, and has screen readers tell
/// it with the `fields` that it is about. An empty text withdraws it. The dialog grows when it has no room for the
/// line.
void ShowNotice(QLabel& line, const QString& text, std::initializer_list<QWidget*> fields);

/// Gives `dialog` the height that its lines need at its width; one that is high enough, or not shown yet, stays as it
/// is.
void GrowToFit(QWidget& dialog);
