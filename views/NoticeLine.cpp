#include "views/NoticeLine.h"

#include <QAccessible>
#include <QLabel>
#include <QLayout>

void ShowNotice(QLabel& line, const QString& text, std::initializer_list<QWidget*> fields)
{
    if (text == line.text())
        return;
    line.setText(text);
    line.setVisible(!text.isEmpty());
    for (QWidget* field : fields)
        field->setAccessibleDescription(text); // a screen reader tells a change of the one with the focus
    if (text.isEmpty())
        return;
    QAccessibleEvent alert(&line, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
    GrowToFit(*line.window());
}

void GrowToFit(QWidget& dialog)
{
    if (!dialog.isVisible())
        return;
    QLayout& layout = *dialog.layout();
    layout.activate();
    const int height = layout.totalHeightForWidth(dialog.width()); // a layout grows by itself for fixed heights only
    if (height > dialog.height())
        dialog.resize(dialog.width(), height);
}
