#include "controls/TitleTip.h"

#include <QApplication>
#include <QMouseEvent>
#include <QToolTip>

CTitleTip::CTitleTip(QWidget* owner)
    : QLabel(owner, Qt::ToolTip | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_nDoubleClickTime(QApplication::doubleClickInterval())
{
    setObjectName(QStringLiteral("titleTip"));
    setFrameShape(QFrame::Box);
    setTextFormat(Qt::PlainText);
    setPalette(QToolTip::palette());
    setBackgroundRole(QPalette::ToolTipBase);
    setForegroundRole(QPalette::ToolTipText);
    setAutoFillBackground(true);
    setCursor(Qt::ArrowCursor);
    setMouseTracking(true);
}

bool CTitleTip::Show(const QRect& place, const QString& text)
{
    setText(text);
    const int width = sizeHint().width();
    if (width <= place.width())
        return false;
    m_rectPlace = place;
    setGeometry(place.x(), place.y(), width, place.height());
    show();
    return true;
}

void CTitleTip::Hide()
{
    if (QWidget::mouseGrabber() == this)
        releaseMouse();
    hide();
}

void CTitleTip::mouseMoveEvent(QMouseEvent* event)
{
    const QPoint point = event->globalPosition().toPoint();
    if (m_rectPlace.contains(point))
        return;
    Hide();
    QWidget* below = QApplication::widgetAt(point);
    if (below == nullptr)
        return;
    QMouseEvent move(QEvent::MouseMove, below->mapFromGlobal(event->globalPosition()), event->globalPosition(),
                     event->button(), event->buttons(), event->modifiers());
    QCoreApplication::sendEvent(below, &move);
}
