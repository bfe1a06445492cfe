#include "app/activation_triggers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

TEST(HotCorner, SummonsOncePerPushIntoTheCornerOfAnyScreen) {
    const QList<QRect> screens{{0, 0, 1440, 900}, {1440, 0, 1920, 1080}};
    auto corner = HotCorner::named(QStringLiteral("bottomRight"));
    ASSERT_TRUE(corner);
    EXPECT_FALSE(corner->isEntered({700, 400}, screens));
    EXPECT_TRUE(corner->isEntered({1439, 899}, screens));
    EXPECT_FALSE(corner->isEntered({1438, 898}, screens)); // still there
    EXPECT_FALSE(corner->isEntered({1430, 899}, screens));
    EXPECT_TRUE(corner->isEntered({1439, 899}, screens));
    EXPECT_FALSE(corner->isEntered({1440, 1079}, screens)); // another corner
    EXPECT_TRUE(corner->isEntered({3359, 1079}, screens));
    EXPECT_EQ(HotCorner::named(QStringLiteral("top")).has_value(), false);
}

} // namespace
} // namespace tessellar
