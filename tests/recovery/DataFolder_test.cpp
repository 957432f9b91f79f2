#include "recovery/DataFolder.h"
#include "tests/support/Variable.h"

#include <gtest/gtest.h>

TEST(OwnDataFolder, LiesInThatOfTheUser)
{
    const CVariable dataHome("XDG_DATA_HOME", "/data");
    EXPECT_EQ(OwnDataFolder(), "/data/vantor");
}

TEST(OwnDataFolder, IsNoneWhereTheUserHasNone)
{
    const CVariable dataHome("XDG_DATA_HOME", nullptr);
    const CVariable home("HOME", nullptr);
    EXPECT_TRUE(OwnDataFolder().empty());
}
