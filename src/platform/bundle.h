#pragma once

#include "platform/file_system.h"
#include "platform/property_list.h"

#include <QString>

#include <expected>
#include <optional>

namespace tessellar {

/// Where a bundle keeps its parts: Mac applications in "Contents"; iPhone applications on a Mac
/// ("wrapped") in "Wrapper", beside the store's metadata.
enum class BundleShape { mac, wrapped, flat };

/// A snapshot of a bundle. Property lists are size-limited; a value of the wrong type counts as absent.
struct Bundle {
    QString path;
    BundleShape shape = BundleShape::mac;
    QString infoPath;            ///< the Info.plist in effect
    QString resourcesPath;       ///< where icons and localizations lie
    PropertyValue info;          ///< absent if unreadable
    PropertyValue storeMetadata; ///< iTunesMetadata.plist of a wrapped application

    std::optional<QString> identifier() const;           ///< CFBundleIdentifier
    std::optional<QString> version() const;              ///< CFBundleShortVersionString
    std::optional<QString> build() const;                ///< CFBundleVersion
    std::optional<QString> category() const;             ///< LSApplicationCategoryType
    std::optional<QString> minimumSystemVersion() const; ///< LSMinimumSystemVersion
    /// nullopt if the declared name leads outside the bundle.
    std::optional<QString> executablePath() const;
    /// The `.icns` file named by CFBundleIconFile, with or without the extension; nullopt if it leads
    /// outside the bundle. Not checked to exist.
    std::optional<QString> iconPath() const;
};

/// Never fails: unreadable parts are absent.
Bundle readBundle(const FileSystem& files, const QString& path);

/// True for a bundle that holds "Wrapper/iTunesMetadata.plist".
bool isWrappedApplication(const FileSystem& files, const QString& path);

/// "Maple" for "Maple.app", ignoring case; ".app" alone stays.
QString withoutApplicationExtension(QString name);

/// The file name as users see it: without ".app", and with "/" for each ":" on the disk.
QString nameOnDisk(const QString& path);

/// The name that the Finder shows, without ".app". Localized if the bundle allows it (its unlocalized
/// display name equals the name on the disk, or LSHasLocalizedDisplayName is set), in the first of
/// `languages` that the bundle supports, else its development language; otherwise the name on the disk.
/// `languages` is in order of preference ("de", "zh-Hant-HK").
QString finderDisplayName(const FileSystem& files, const Bundle& bundle, const QStringList& languages);

/// The files other than the Info.plist, existing or not, that `finderDisplayName` depends on; empty for
/// most bundles.
QStringList displayNameSources(const Bundle& bundle, const QStringList& languages);

} // namespace tessellar
