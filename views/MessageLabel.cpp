#include "views/MessageLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMimeData>
#include <QScrollBar>
#include <QStyle>
#include <QTextDocument>

#include <algorithm>
#include <cmath>

namespace {

constexpr QTextOption::WrapMode kWrap = QTextOption::WrapAtWordBoundaryOrAnywhere;

/// `text` with a blank for each character of which the toolkit would make none or a frame of its own, so that a place
/// in what is shown is the same place in the text.
QString Shown(QString text)
{
    for (QChar& c : text)
        if (c == u'\r' || c == u'\0' || c == QChar(0xFDD0) || c == QChar(0xFDD1))
            c = u' ';
    return text;
}

/// The size of `text` in lines no wider than `most`.
QSize NeededFor(const QString& text, const QFont& font, int most)
{
    QTextDocument sheet;
    sheet.setDocumentMargin(0);
    sheet.setDefaultFont(font);
    sheet.setPlainText(text);
    const int width = std::min(static_cast<int>(std::ceil(sheet.idealWidth())), most); // not wrapped so far
    QTextOption wrapped;
    wrapped.setWrapMode(kWrap);
    sheet.setDefaultTextOption(wrapped);
    sheet.setTextWidth(width);
    return {width, static_cast<int>(std::ceil(sheet.size().height()))};
}

/// To screen readers it is a text that stands there, not a field.
QAccessibleInterface* MakeLabelAccessible(const QString& className, QObject* object)
{
    if (className != QLatin1String("CMessageLabel"))
        return nullptr;
    auto* label = static_cast<CMessageLabel*>(object);
    return new QAccessibleWidget(label, QAccessible::StaticText, label->Message());
}

} // namespace

CMessageLabel::CMessageLabel(const QString& text, QSize most, QWidget* parent) : QTextEdit(parent), m_strText(text)
{
    static const bool installed = (QAccessible::installFactory(MakeLabelAccessible), true);
    Q_UNUSED(installed)
    setObjectName(QStringLiteral("labelMessage"));
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setFrameShape(NoFrame);
    setWordWrapMode(kWrap);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    viewport()->setAutoFillBackground(false);
    QPalette colors = palette();
    colors.setColor(QPalette::Text, colors.color(QPalette::WindowText));
    setPalette(colors);
    document()->setDocumentMargin(0);
    setPlainText(Shown(text));
    Fit(most);
}

void CMessageLabel::Fit(QSize most)
{
    const QSize needed = NeededFor(toPlainText(), font(), most.width());
    const bool scrolls = needed.height() > most.height();
    setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
    setFocusPolicy(scrolls ? Qt::StrongFocus : Qt::ClickFocus); // else Tab would lead where there is nothing to do
    const int bar = scrolls ? style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, verticalScrollBar()) : 0;
    setFixedSize(needed.width() + bar, std::min(needed.height(), most.height()));
}

QMimeData* CMessageLabel::createMimeDataFromSelection() const
{
    const QTextCursor cursor = textCursor();
    auto* copied = new QMimeData;
    copied->setText(m_strText.mid(cursor.selectionStart(), cursor.selectionEnd() - cursor.selectionStart()));
    return copied;
}

/// With nothing selected the box copies all of it.
void CMessageLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Copy) && !textCursor().hasSelection())
        event->ignore();
    else
        QTextEdit::keyPressEvent(event);
}
