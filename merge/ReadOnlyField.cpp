#include "merge/ReadOnlyField.h"

#include <limits>

CReadOnlyField::CReadOnlyField(QWidget* parent) : QLineEdit(parent)
{
    setReadOnly(true);
    setMaxLength(std::numeric_limits<int>::max()); // what is shown is what is used
    QPalette ground;
    ground.setColor(QPalette::Base, palette().color(QPalette::Window));
    setPalette(ground);
}

void CReadOnlyField::ShowText(const QString& text)
{
    setText(text);
    setToolTip(Qt::convertFromPlainText(text, Qt::WhiteSpacePre)); // a path may hold "<" and "&"
}
