#include "platform/text.h"

#include "tests/support/printers.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tessellar {
namespace {

TEST(Text, CountsUserPerceivedCharacters) {
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(u"Café"), 4);
    EXPECT_EQ(characterCount(u"Cafe\u0301"), 4);
    EXPECT_EQ(characterCount(u"a\r\nb"), 3);
    EXPECT_EQ(characterCount(u"日本"), 2);
    EXPECT_EQ(characterCount(u"한"), 1);
    EXPECT_EQ(characterCount(u"👩‍👩‍👧‍👦!"), 2);
    EXPECT_EQ(characterCount(u"🇩🇪🇫🇷"), 2);
    EXPECT_EQ(characterCount(u"👍🏽"), 1);
}

} // namespace
} // namespace tessellar
