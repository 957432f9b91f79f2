#include "app/LockKeys.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <gtest/gtest.h>

namespace {

constexpr quint32 kCaps = 0x02;
constexpr quint32 kNum = 0x10;

/// A key press as the platform reports it, with its own modifier bits.
void PressWith(quint32 nativeModifiers)
{
    QObject receiver;
    QKeyEvent press(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, 38, 0x61, nativeModifiers);
    QCoreApplication::sendEvent(&receiver, &press);
}

} // namespace

TEST(LockKeys, WithoutAKeyboardsLightsTheyFollowTheKeyEvents)
{
    CLockKeys keys;
    int changes = 0;
    QObject::connect(&keys, &CLockKeys::Changed, [&] { ++changes; });
    PressWith(kCaps);
    EXPECT_TRUE(keys.IsOn(CLockKeys::Caps));
    EXPECT_FALSE(keys.IsOn(CLockKeys::Num));
    PressWith(kCaps | kNum);
    EXPECT_TRUE(keys.IsOn(CLockKeys::Num));
    PressWith(kCaps | kNum);
    EXPECT_EQ(changes, 2); // the third press changed nothing
    PressWith(0);
    EXPECT_FALSE(keys.IsOn(CLockKeys::Caps));
    EXPECT_FALSE(keys.IsOn(CLockKeys::Num));
    EXPECT_FALSE(keys.IsOn(CLockKeys::Scroll));
}
