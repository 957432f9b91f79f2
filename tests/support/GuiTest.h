#pragma once

#include <QAction>
#include <QString>
#include <QWidget>

#include <functional>
#include <ostream>

/// Lets events be handled until `condition` holds. False when it does not within five seconds.
[[nodiscard]] bool WaitFor(const std::function<bool()>& condition);

/// Shows `window` and waits until it is the active one, so that its fields can have the focus.
[[nodiscard]] bool ShowActive(QWidget& window);

/// Turns the wheel over `widget` towards the user, as the desktop reports it: only such an event goes on to the widgets
/// around one that has no use for it.
void TurnWheel(QWidget& widget, int notches);

/// Triggers the action `objectName` below `root` as a menu would. Fails the test when it is missing or disabled.
void Trigger(const QObject& root, const QString& objectName);

/// How a failed expectation shows a text. The toolkit's string is a container of units to the test library.
inline void PrintTo(const QString& text, std::ostream* out)
{
    *out << '"' << text.toStdString() << '"';
}
