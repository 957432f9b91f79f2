#include "tests/support/ListOpenChoice.h"

#include "tests/support/DialogSteps.h"

#include <QApplication>
#include <QFileDialog>
#include <QTest>
#include <gtest/gtest.h>

namespace {

constexpr int kLookEvery = 5; // milliseconds
constexpr int kLooks = 1000;  // until it gives up
constexpr int kLooksPerKey = 20;

/// The list comes up with a key, when the toolkit has read the folder.
void TypeLastAgain(QLineEdit& field)
{
    const char last = field.text().back().toLatin1();
    QTest::keyClick(&field, Qt::Key_Backspace);
    QTest::keyClick(&field, last);
}

} // namespace

CListOpenChoice::CListOpenChoice(const QString& name) : m_strName(name)
{
    connect(&m_timer, &QTimer::timeout, this, &CListOpenChoice::Look);
    m_timer.start(kLookEvery);
}

void CListOpenChoice::Look()
{
    auto* dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
    if (dialog == nullptr)
        return;
    if (!dialog->isActiveWindow()) {
        dialog->activateWindow(); // the toolkit completes names only in a field with the focus
    } else if (!m_bTyped) {
        m_bTyped = true;
        dialog->installEventFilter(this);
        TypeInto(*dialog, "fileNameEdit", m_strName);
    } else if (QWidget* list = QApplication::activePopupWidget(); list != nullptr && !m_bReturned) {
        m_bReturned = true;
        QTest::keyClick(list, Qt::Key_Return);
    } else if (++m_nLooks == kLooks) {
        ADD_FAILURE() << "no list of completions, or the dialog stays";
        dialog->reject();
    } else if (m_nLooks % kLooksPerKey == 0 && !m_bReturned) {
        TypeLastAgain(FindIn<QLineEdit>(*dialog, "fileNameEdit"));
    }
}

bool CListOpenChoice::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::Hide)
        m_bClosedListFirst = QApplication::activePopupWidget() == nullptr;
    return QObject::eventFilter(watched, event);
}
