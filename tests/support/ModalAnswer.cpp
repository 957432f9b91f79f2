#include "tests/support/ModalAnswer.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

namespace {

/// A dialog that cannot be answered as asked fails the test, and goes all the same, lest the test hang.
void Click(QWidget& dialog, QAbstractButton* button, const std::string& name)
{
    if (button != nullptr && button->isEnabled()) {
        button->click();
        return;
    }
    ADD_FAILURE() << "no enabled button " << name << " in " << dialog.windowTitle().toStdString();
    dialog.close();
}

QAbstractButton* FindButton(QWidget& dialog, QMessageBox::StandardButton button)
{
    if (auto* box = qobject_cast<QMessageBox*>(&dialog))
        return box->button(button);
    auto* buttons = dialog.findChild<QDialogButtonBox*>();
    return buttons != nullptr ? buttons->button(static_cast<QDialogButtonBox::StandardButton>(button)) : nullptr;
}

} // namespace

CModalAnswer::CModalAnswer(QMessageBox::StandardButton button, std::chrono::milliseconds delay)
    : CModalAnswer(std::vector<Action>{Press(button)}, delay)
{
}

CModalAnswer::CModalAnswer(std::vector<Action> actions, std::chrono::milliseconds delay)
    : m_actions(std::move(actions)),
      m_delay(delay)
{
    // Repeating: a dialog may come up long after this, and a single shot would have fired before it.
    connect(&m_timer, &QTimer::timeout, this, &CModalAnswer::Look);
    m_timer.start(5);
}

CModalAnswer::Action CModalAnswer::Press(QMessageBox::StandardButton button)
{
    return [button](QWidget& dialog) { Click(dialog, FindButton(dialog, button), std::to_string(button)); };
}

CModalAnswer::Action CModalAnswer::PressNamed(const QString& objectName)
{
    return [objectName](QWidget& dialog) {
        Click(dialog, dialog.findChild<QAbstractButton*>(objectName), objectName.toStdString());
    };
}

CModalAnswer::Action CModalAnswer::Key(Qt::Key key)
{
    return [key](QWidget& dialog) {
        QWidget* focus = dialog.focusWidget();
        QTest::keyClick(focus != nullptr ? focus : &dialog, key);
    };
}

void CModalAnswer::Look()
{
    if (m_bAnswering || QApplication::activeModalWidget() == nullptr)
        return;
    m_bAnswering = true;
    // Not from within the timer's own event: it would not fire again for a dialog that the answer brings up.
    QTimer::singleShot(m_delay, this, &CModalAnswer::Answer);
}

void CModalAnswer::Answer()
{
    m_bAnswering = false;
    QWidget* dialog = QApplication::activeModalWidget();
    if (dialog == nullptr || m_actions.empty())
        return;
    const auto* box = qobject_cast<QMessageBox*>(dialog);
    texts.push_back(box != nullptr ? box->text() : dialog->windowTitle());
    titles.push_back(dialog->windowTitle());
    const Action action = m_actions[std::min(m_next++, m_actions.size() - 1)];
    action(*dialog);
}
