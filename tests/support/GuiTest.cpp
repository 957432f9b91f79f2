#include "tests/support/GuiTest.h"

#include <QTest>
#include <gtest/gtest.h>

bool WaitFor(const std::function<bool()>& condition)
{
    return QTest::qWaitFor(condition, 5000);
}

bool ShowActive(QWidget& window)
{
    window.show();
    window.activateWindow();
    return QTest::qWaitForWindowActive(&window);
}

void Trigger(const QObject& root, const QString& objectName)
{
    auto* action = root.findChild<QAction*>(objectName);
    if (action == nullptr)
        ADD_FAILURE() << "no action " << objectName.toStdString();
    else if (!action->isEnabled())
        ADD_FAILURE() << "disabled: " << objectName.toStdString();
    else
        action->trigger();
}
