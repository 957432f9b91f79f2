#include "controls/FocusComboBox.h"

#include <QWheelEvent>

CFocusComboBox::CFocusComboBox(QWidget* parent) : QComboBox(parent)
{
    setFocusPolicy(Qt::StrongFocus); // the toolkit's own lets the wheel give it the focus
}

void CFocusComboBox::wheelEvent(QWheelEvent* event)
{
    if (hasFocus())
        QComboBox::wheelEvent(event);
    else
        event->ignore();
}
