#include "app/MySplitter.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QSplitterHandle>

#include <algorithm>

namespace {

constexpr int kLeastRightPane = 10; // pixels

class CMySplitterHandle final : public QSplitterHandle {
public:
    explicit CMySplitterHandle(CMySplitter& splitter) : QSplitterHandle(Qt::Horizontal, &splitter), m_splitter(splitter)
    {
        setFocusPolicy(Qt::TabFocus);
        setAccessibleName(CMySplitter::tr("Show or hide the left pane"));
        setToolTip(CMySplitter::tr("Click to hide the left pane, click again to show it"));
    }

protected:
    void mouseReleaseEvent(QMouseEvent* event) override
    {
        const bool toggles = event->button() == Qt::LeftButton &&
                             m_splitter.TogglesAt(m_splitter.mapFromGlobal(event->globalPosition().toPoint()).y());
        QSplitterHandle::mouseReleaseEvent(event); // ends the tracking at the dragged position …
        if (toggles)
            m_splitter.Toggle(); // … and this puts the bar where it belongs
    }

    void keyPressEvent(QKeyEvent* event) override
    {
        switch (event->key()) {
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            m_splitter.Toggle();
            break;
        default:
            QSplitterHandle::keyPressEvent(event);
        }
    }

    void paintEvent(QPaintEvent* event) override
    {
        QSplitterHandle::paintEvent(event);
        if (!hasFocus())
            return;
        QPainter painter(this); // the style's own frame can hardly be seen on a bar so narrow
        painter.setPen(palette().color(QPalette::Highlight));
        painter.drawRect(rect().adjusted(0, 0, -1, -1));
    }

private:
    CMySplitter& m_splitter;
};

/// The toolkit gives a splitter's bar no role of its own.
QAccessibleInterface* MakeBarAccessible(const QString& className, QObject* object)
{
    if (className != QLatin1String("QSplitterHandle"))
        return nullptr;
    return new QAccessibleWidget(static_cast<QWidget*>(object), QAccessible::Splitter);
}

} // namespace

CMySplitter::CMySplitter(QWidget* parent) : QSplitter(Qt::Horizontal, parent)
{
    static const bool installed = (QAccessible::installFactory(MakeBarAccessible), true);
    Q_UNUSED(installed)
    setOpaqueResize(false);
    setChildrenCollapsible(true);
    setHandleWidth(6);
    connect(this, &QSplitter::splitterMoved, this, &CMySplitter::BarMoved);
}

QSplitterHandle* CMySplitter::createHandle()
{
    return new CMySplitterHandle(*this);
}

bool CMySplitter::TogglesAt(int y) const
{
    const int top = mapToGlobal(QPoint(0, 0)).y();
    return y > top && y < top + height();
}

void CMySplitter::Toggle()
{
    const int left = m_bExpanded ? 0 : m_nLeftPaneWidth;
    m_bExpanded = !m_bExpanded;
    if (left == 0 && widget(0)->isAncestorOf(window()->focusWidget()))
        widget(1)->setFocus(); // a collapsed pane would go on taking the keys
    PlaceBar(left);
    DisableHiddenPane();
}

void CMySplitter::PlaceBar(int left)
{
    m_nLeftWanted = left;
    // The right pane is never left without width: a pane of no width stays collapsed however large the window becomes.
    setSizes({left, std::max(width() - handleWidth() - left, kLeastRightPane)});
}

/// Dragged there: that is the width it keeps.
void CMySplitter::BarMoved()
{
    m_nLeftWanted = sizes().front();
    DisableHiddenPane();
}

/// The toolkit takes the room from both panes, and gives none back.
void CMySplitter::resizeEvent(QResizeEvent* event)
{
    QSplitter::resizeEvent(event);
    PlaceBar(m_nLeftWanted);
}

/// The panes may need more room, or less, than they did.
bool CMySplitter::event(QEvent* event)
{
    const bool handled = QSplitter::event(event);
    if (event->type() == QEvent::LayoutRequest)
        PlaceBar(m_nLeftWanted);
    return handled;
}

void CMySplitter::DisableHiddenPane()
{
    widget(0)->setEnabled(ShowsLeftPane());
}

void CMySplitter::mouseReleaseEvent(QMouseEvent* event)
{
    // Released on the splitter but not on its bar: nothing is tracked, so the bar stays where it is.
    if (event->button() == Qt::LeftButton && TogglesAt(event->position().toPoint().y()))
        m_bExpanded = !m_bExpanded; // kept: the next toggle repeats the previous position
    QSplitter::mouseReleaseEvent(event);
}
