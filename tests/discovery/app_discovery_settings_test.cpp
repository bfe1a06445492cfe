#include "discovery/app_discovery_settings.h"

#include "support/memory_settings.h"
#include "support/printers.h"

#include <QJsonArray>

#include <gtest/gtest.h>

#include <limits>

namespace tessellar {
namespace {

using namespace Qt::Literals::StringLiterals;

const QString home = u"/Users/ada"_s;

AppDiscoverySettings read(const QMap<QString, QJsonValue>& values) {
    test::MemorySettings settings;
    for (auto value = values.begin(); value != values.end(); ++value)
        EXPECT_TRUE(settings.set(u"appDiscovery."_s + value.key(), value.value()));
    return AppDiscoverySettings::read(settings, home);
}

TEST(AppDiscoverySettings, ScanDepthIsAnIntegralNumberWithinItsRange) {
    constexpr auto infinity = std::numeric_limits<double>::infinity();
    constexpr auto none = std::numeric_limits<double>::quiet_NaN();
    const std::pair<int, QList<QJsonValue>> cases[] = {
        {4, {true, false, 2.5, u"3"_s, QJsonArray{3}, infinity, none}},
        {1, {0, -7, 1, -1e300}},
        {3, {3.0}},
        {7, {7}},
        {10, {10, 11, 1e300}}};
    for (const auto& [depth, values] : cases)
        for (const QJsonValue& stored : values)
            EXPECT_EQ(read({{u"scanDepth"_s, stored}}).scanDepth, depth) << stored.toDouble();
    EXPECT_EQ(read({}).scanDepth, 4);
}

TEST(AppDiscoverySettings, SearchPathsReplaceTheDefaultsAndAdditionalOnesFollow) {
    const QStringList standard{u"/Applications"_s, u"/System/Applications"_s,
                               u"/System/Cryptexes/App/System/Applications"_s,
                               u"/Users/ada/Applications"_s};
    EXPECT_EQ(read({}).searchPaths, standard);
    EXPECT_TRUE(read({}).isCertain);
    EXPECT_FALSE(read({{u"additionalSearchPaths"_s, 5}}).isCertain);
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray{u"/opt"_s}}}).searchPaths, QStringList(u"/opt"_s));
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray()}}).searchPaths, QStringList());
    EXPECT_EQ(
        read({{u"additionalSearchPaths"_s, QJsonArray{u"/opt"_s, u"/Applications"_s}}}).searchPaths,
        standard + QStringList(u"/opt"_s));
    EXPECT_EQ(read({{u"searchPaths"_s, QJsonArray{u"/a"_s}},
                    {u"additionalSearchPaths"_s, QJsonArray{u"/b"_s}}})
                  .searchPaths,
              QStringList({u"/a"_s, u"/b"_s}));
    for (const QJsonValue& wrong : {QJsonValue(u"/opt"_s), QJsonValue(QJsonArray{u"/opt"_s, 1})})
        EXPECT_EQ(read({{u"searchPaths"_s, wrong}, {u"additionalSearchPaths"_s, wrong}}).searchPaths,
                  standard);
}

TEST(AppDiscoverySettings, PathsAreNormalised) {
    const QStringList given{u"/opt//apps/./x/.."_s,
                            u"/opt/apps/"_s,
                            u"relative"_s,
                            u""_s,
                            u"~/Apps"_s,
                            u"~"_s,
                            u"~other/Apps"_s,
                            u"/Opt/apps"_s,
                            u"/a"_s + QChar(u'\0'),
                            u"/../.."_s};
    EXPECT_EQ(
        AppDiscoverySettings::normalized(given, home),
        QStringList({u"/opt/apps"_s, u"/Users/ada/Apps"_s, u"/Users/ada"_s, u"/Opt/apps"_s, u"/"_s}));
}

} // namespace
} // namespace tessellar
