#include "tests/support/GuiTest.h"

#include <QApplication>
#include <QTest>
#include <QWheelEvent>
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

void TurnWheel(QWidget& widget, int notches)
{
    const QPoint at = widget.rect().center();
    QWheelEvent wheel(at, widget.mapToGlobal(at), {}, QPoint(0, -120 * notches), Qt::NoButton, {}, Qt::NoScrollPhase,
                      false);
    QSpontaneKeyEvent::setSpontaneous(&wheel);
    qApp->notify(&widget, &wheel);
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
