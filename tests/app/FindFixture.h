#pragma once

#include "tests/app/EditFixture.h"
#include "views/FindBar.h"

#include <QLineEdit>
#include <QPushButton>

/// The window over "a.rcp" and its find bar.
struct FindFixture : EditFixture {
    CFindBar& Bar() { return Find<CFindBar>("barFind"); }

    /// Types into the field of the bar, which Ctrl+F opens where it is not open.
    void Look(const QString& text);

    /// Waits until the bar says `text`; false, and what it says is printed, when it does not.
    bool Told(const QString& text);

    /// Goes to the entry of a list by keys; the focus goes back to the field.
    void ChooseIn(const char* list, int entry);

    void ClickButton(const char* name);

    /// The lines of the Changes panel, their columns divided by "|".
    QStringList Lines();
};
