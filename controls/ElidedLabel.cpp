#include "controls/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

CElidedLabel::CElidedLabel(const QString& text, QWidget* parent) : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

QRect CElidedLabel::TextRect() const
{
    const int before = std::max(indent(), 0);
    const QRect inner = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
    return isRightToLeft() ? inner.adjusted(0, 0, -before, 0) : inner.adjusted(before, 0, 0, 0);
}

bool CElidedLabel::IsCut() const
{
    return fontMetrics().horizontalAdvance(text()) > TextRect().width();
}

bool CElidedLabel::event(QEvent* event)
{
    if (event->type() != QEvent::ToolTip || !toolTip().isEmpty() || !IsCut())
        return QLabel::event(event);
    const QString whole = QStringLiteral("<p>%1</p>").arg(text().toHtmlEscaped()); // which wraps
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), whole, this);
    return true;
}

void CElidedLabel::paintEvent(QPaintEvent* event)
{
    if (!IsCut())
        return QLabel::paintEvent(event);
    QPainter painter(this);
    drawFrame(&painter);
    const QRect rect = TextRect();
    const QString shown = fontMetrics().elidedText(text(), Qt::ElideRight, rect.width());
    const auto alignment = QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft | Qt::AlignVCenter);
    style()->drawItemText(&painter, rect, static_cast<int>(alignment), palette(), isEnabled(), shown, foregroundRole());
}
