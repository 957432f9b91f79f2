#include "app/VantorApp.h"
#include "tests/support/OwnSettings.h"

#include <QByteArray>
#include <gtest/gtest.h>

/// The window's tests run under the program's own name and look.
int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const COwnSettings settings;
    testing::InitGoogleTest(&argc, argv);
    const CVantorApp application(argc, argv);
    return RUN_ALL_TESTS();
}
