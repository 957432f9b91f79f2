#include "controls/Strip.h"

#include <QAccessible>
#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

CStrip::CStrip(QWidget* parent)
    : QFrame(parent),
      m_pText(new QLabel),
      m_pButtons(new QHBoxLayout),
      m_pDismiss(new QToolButton)
{
    setObjectName(QStringLiteral("strip"));
    setFrameShape(QFrame::StyledPanel);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);

    m_pText->setObjectName(QStringLiteral("labelStrip"));
    m_pText->setTextFormat(Qt::PlainText);
    m_pText->setForegroundRole(QPalette::ToolTipText);
    m_pText->setWordWrap(true);
    m_pText->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_pText->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred); // a long text makes no wide window

    m_pDismiss->setObjectName(QStringLiteral("buttonDismissStrip"));
    m_pDismiss->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton));
    m_pDismiss->setAutoRaise(true);
    m_pDismiss->setFocusPolicy(Qt::TabFocus);
    m_pDismiss->setToolTip(tr("Dismiss"));
    m_pDismiss->setAccessibleName(tr("Dismiss this message"));
    connect(m_pDismiss, &QToolButton::clicked, this, &CStrip::Dismiss);

    auto* layout = new QHBoxLayout(this);
    const int margin = style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing) / 2;
    layout->setContentsMargins(style()->pixelMetric(QStyle::PM_LayoutLeftMargin), margin, margin, margin);
    layout->addWidget(m_pText, 1);
    layout->addLayout(m_pButtons);
    layout->addWidget(m_pDismiss);
    connect(qApp, &QApplication::focusChanged, this, &CStrip::RememberFocus);
    hide();
}

void CStrip::ShowMessage(int weight, const StripMessage& message)
{
    m_messages.insert_or_assign(weight, message);
    if (IsSeen(weight))
        ShowHeaviest();
}

void CStrip::Withdraw(int weight)
{
    const auto found = m_messages.find(weight);
    if (found == m_messages.end())
        return;
    const bool isSeen = IsSeen(weight);
    m_messages.erase(found);
    if (isSeen)
        ShowHeaviest();
}

void CStrip::ShowHeaviest()
{
    if (isAncestorOf(window()->focusWidget())) // even while a dialog is open: the window may not be active yet
        GiveFocusBack();
    if (m_messages.empty()) {
        hide();
        return;
    }
    const StripMessage& message = m_messages.rbegin()->second;
    m_pText->setText(message.text);
    m_pText->setToolTip(QStringLiteral("<p>%1</p>").arg(message.text.toHtmlEscaped())); // a long name may be cut off
    setAccessibleName(message.text);
    MakeButtons(message.buttons);
    show();
    QAccessibleEvent event(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

/// Those of the message before may be in the middle of a click: they go when it is over.
void CStrip::MakeButtons(const QList<StripButton>& buttons)
{
    while (QLayoutItem* item = m_pButtons->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    setFocusProxy(m_pDismiss);
    QWidget* before = m_pText;
    for (const StripButton& button : buttons) {
        auto* pushButton = new QPushButton(button.text);
        pushButton->setObjectName(QStringLiteral("buttonStrip"));
        pushButton->setAutoDefault(true);
        m_pButtons->addWidget(pushButton);
        connect(pushButton, &QPushButton::clicked, this, [run = button.run] { run(); });
        setTabOrder(before, pushButton);
        if (before == m_pText)
            setFocusProxy(pushButton);
        before = pushButton;
    }
    setTabOrder(before, m_pDismiss);
}

void CStrip::Dismiss()
{
    const int weight = m_messages.rbegin()->first;
    Withdraw(weight);
    emit Dismissed(weight);
}

void CStrip::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (event->key() == Qt::Key_Escape || (isEnter && m_pDismiss->hasFocus()))
        Dismiss();
    else
        QFrame::keyPressEvent(event);
}

/// What comes from a dialog, or from no widget at all, comes back to where it was before that.
void CStrip::RememberFocus(QWidget* before, const QWidget* now)
{
    const bool isOfWindow = before != nullptr && before->window() == window();
    if (isOfWindow && isAncestorOf(now) && !isAncestorOf(before))
        m_pFocusBefore = before;
}

void CStrip::GiveFocusBack()
{
    if (m_pFocusBefore)
        m_pFocusBefore->setFocus(Qt::OtherFocusReason);
    else
        window()->focusWidget()->clearFocus();
}
