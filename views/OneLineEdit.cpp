#include "views/OneLineEdit.h"

#include <QLineEdit>

namespace {

bool IsBreakOrControl(QChar c)
{
    return c.category() == QChar::Other_Control || c == QChar::LineSeparator || c == QChar::ParagraphSeparator;
}

/// Whether the unit at `i` is a surrogate without its other half.
bool IsHalfCharacter(const QString& text, qsizetype i)
{
    if (text[i].isHighSurrogate())
        return i + 1 == text.size() || !text[i + 1].isLowSurrogate();
    return text[i].isLowSurrogate() && (i == 0 || !text[i - 1].isHighSurrogate());
}

QString OnOneLine(const QString& text)
{
    QString line;
    line.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i)
        if (!IsHalfCharacter(text, i))
            line += IsBreakOrControl(text[i]) ? QChar(u' ') : text[i];
    return line;
}

} // namespace

void KeepOnOneLine(QLineEdit& edit)
{
    QObject::connect(&edit, &QLineEdit::textEdited, &edit, [&edit](const QString& text) {
        const QString line = OnOneLine(text);
        if (line == text)
            return;
        const int cursor = edit.cursorPosition();
        edit.setText(line); // the paste cannot be undone: that would bring back the line break, which comes here again
        edit.setCursorPosition(cursor);
    });
}
