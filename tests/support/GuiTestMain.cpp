#include "tests/support/OwnSettings.h"

#include <QApplication>
#include <QByteArray>
#include <gtest/gtest.h>

/// The main program of every suite of window tests: they need no display and run inside one application object.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const COwnSettings settings;
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
