#include "views/ReadOnlyField.h"

#include <limits>

namespace {

/// `text` with a place to break it in at least every sixty characters: a tip that shows a long name in one line would
/// reach beyond the screen.
QString Breakable(QString text)
{
    constexpr qsizetype kMostUnbroken = 60;
    constexpr QChar kZeroWidthSpace(0x200B);
    for (qsizetype i = kMostUnbroken; i < text.size(); i += kMostUnbroken + 1)
        text.insert(text.at(i).isLowSurrogate() ? i - 1 : i, kZeroWidthSpace);
    return text;
}

} // namespace

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
    setToolTip(Qt::convertFromPlainText(Breakable(text), Qt::WhiteSpacePre)); // a path may hold "<" and "&"
}
