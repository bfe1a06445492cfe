#pragma once

#include "discovery/app_scanner.h"
#include "sample/mac_builder.h"
#include "support/printers.h"
#include "support/sequential_uuids.h"

#include <QTemporaryDir>

#include <gmock/gmock.h>

#include <filesystem>

namespace tessellar::test {

using namespace Qt::Literals::StringLiterals;

/// A small Mac with a scanner. The time is far ahead of the files' own, so that all of them count as
/// settled; tests of fresh changes move it.
class SmallLibrary : public testing::Test {
protected:
    AppScanner scanner() {
        return AppScanner({.files = files,
                           .settings = settings,
                           .home = u"/Users/ada"_s,
                           .languages = languages,
                           .locale = locale,
                           .uuids = uuids,
                           .now = now,
                           .limits = limits,
                           .threads = 2});
    }
    /// Without a cache.
    AppScanner::LibraryScan scan() {
        ScanCache cache;
        return scan(cache);
    }
    AppScanner::LibraryScan scan(ScanCache& cache) {
        EXPECT_EQ(mac.failure(), std::nullopt);
        return scanner().scan(cache).value_or(AppScanner::LibraryScan());
    }

    static QStringList paths(const AppScanner::LibraryScan& scan) {
        QStringList result;
        for (const AppEntry& entry : scan.apps)
            result += entry.path;
        return result;
    }
    /// "One|Two"
    static QString names(const AppScanner::LibraryScan& scan) {
        QStringList result;
        for (const AppEntry& entry : scan.apps)
            result += entry.name;
        return result.join(u'|');
    }
    /// As file names: "One.app|Two.app".
    static QString incomplete(const AppScanner::LibraryScan& scan) {
        QStringList result;
        for (const auto& bundle : scan.incompleteBundles)
            result += FileSystem::fileName(bundle.path);
        return result.join(u'|');
    }
    /// What can be compared of two scans whose identifiers differ.
    static AppScanner::LibraryScan withoutIdentifiers(AppScanner::LibraryScan scan) {
        for (AppEntry& entry : scan.apps)
            entry.id = QUuid();
        return scan;
    }
    QString add(const QString& folder, const QString& name) {
        return mac.addApplication(
            {.name = name, .folder = folder, .identifier = u"org.example."_s + name});
    }
    /// One whose name on the disk is localized in German, unless that is empty.
    QString addLocalized(const QString& name, const QString& german = {}) {
        return mac.addApplication({.name = name,
                                   .identifier = u"org.example."_s + name,
                                   .displayName = name,
                                   .localizedNames = {{u"de"_s, german}}});
    }
    std::filesystem::path host(const QString& path) const { return mac.hostPath(path).toStdString(); }

    QTemporaryDir root;
    sample::MacBuilder mac{root.path()};
    FileSystem files{root.path()};
    AppDiscoverySettings settings{AppDiscoverySettings::defaultSearchPaths(u"/Users/ada"_s)};
    QStringList languages{u"en"_s};
    Locale locale{u"en_US"_s};
    SequentialUuids uuids;
    Instant now = *Instant::fromIso8601(u"2100-01-01T00:00:00Z");
    ScanLimits limits;
};

} // namespace tessellar::test
