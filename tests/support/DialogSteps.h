#pragma once

#include "tests/support/ModalAnswer.h"

#include <QLineEdit>
#include <QWidget>

#include <stdexcept>
#include <string>

// What a user does in a dialog, with real keys and clicks.

/// The widget `name` below `root`; throws when there is none of that kind.
template <class Widget>
Widget& FindIn(const QWidget& root, const QString& name)
{
    auto* widget = root.findChild<Widget*>(name);
    if (widget == nullptr)
        throw std::runtime_error("no widget " + name.toStdString());
    return *widget;
}

/// The text of the field `name` below `root`.
std::string TextIn(const QWidget& root, const QString& name);

/// Types `text` in place of what the field `name` below `root` holds.
void TypeInto(const QWidget& root, const QString& name, const QString& text);

/// Pastes `text` in place of what the field `name` below `root` holds.
void PasteInto(const QWidget& root, const QString& name, const QString& text);

/// Clicks the button `name` below `root`.
void ClickOn(const QWidget& root, const QString& name);

/// Types `path` into a file dialog and accepts it.
CModalAnswer::Action ChoosePath(const QString& path);
/// Cancels a file dialog.
CModalAnswer::Action CancelDialog();
