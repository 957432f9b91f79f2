#include "disk/File.h"

#include <QStandardPaths>
#include <gtest/gtest.h>

namespace {

TEST(UserDataFolder, IsTheToolkitsToo)
{
    const QString toolkits = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    EXPECT_EQ(UserDataFolder(), std::filesystem::path(toolkits.toStdU16String()));
}

} // namespace
