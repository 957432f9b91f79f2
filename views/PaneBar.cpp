#include "views/PaneBar.h"

#include "controls/ElidedLabel.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

CPaneBar::CPaneBar(const QString& name, QWidget* parent)
    : QFrame(parent),
      m_pLine(new CElidedLabel({}, this)),
      m_pClose(new QToolButton(this))
{
    setAccessibleName(name);
    m_pLine->setObjectName(QStringLiteral("labelAnswer"));
    m_pClose->setObjectName(QStringLiteral("buttonCloseBar"));
    m_pClose->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_pClose->setAutoRaise(true);
    m_pClose->setFocusPolicy(Qt::TabFocus);
    m_pClose->setToolTip(tr("Close (Esc)"));
    m_pClose->setAccessibleName(tr("Close: %1").arg(name));
    connect(m_pClose, &QToolButton::clicked, this, &CPaneBar::Close);
    hide();
}

int CPaneBar::Spacing() const
{
    return style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing) / 2;
}

void CPaneBar::Tell(const QString& text)
{
    if (m_pLine->text() == text)
        return;
    m_pLine->setText(text);
    if (text.isEmpty())
        return;
    QAccessibleEvent alert(m_pLine, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}

QString CPaneBar::Told() const
{
    return m_pLine->text();
}

void CPaneBar::Close()
{
    hide();
    emit Closed();
}

void CPaneBar::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape && event->modifiers() == Qt::NoModifier)
        return Close();
    if (!isEnter)
        return QFrame::keyPressEvent(event);
    if (auto* button = qobject_cast<QPushButton*>(focusWidget()))
        button->click();
    else if (focusWidget() == m_pClose)
        Close();
    else
        EnterPressed(event->modifiers() & ~Qt::KeypadModifier);
}
