#pragma once

#include "platform/file_system.h"
#include "platform/property_list.h"

#include <QString>

#include <expected>
#include <optional>

namespace tessellar {

/// Where a bundle's parts lie: a Mac's application has "Contents", an iPhone's that runs on the Mac
/// ("wrapped") has "Wrapper" with the real bundle and what the store said of it.
enum class BundleShape { mac, wrapped, flat };

/// A bundle looked at once. Its property lists are bounded; a value of a wrong type counts as absent.
struct Bundle {
    QString path;
    BundleShape shape = BundleShape::mac;
    QString infoPath;            ///< of the Info.plist that counts
    QString resourcesPath;       ///< where icons and localizations lie
    PropertyValue info;          ///< absent when it cannot be read
    PropertyValue storeMetadata; ///< of a wrapped application: iTunesMetadata.plist

    std::optional<QString> identifier() const;           ///< CFBundleIdentifier
    std::optional<QString> version() const;              ///< CFBundleShortVersionString
    std::optional<QString> build() const;                ///< CFBundleVersion
    std::optional<QString> category() const;             ///< LSApplicationCategoryType
    std::optional<QString> minimumSystemVersion() const; ///< LSMinimumSystemVersion
    /// The executable inside the bundle, when its declared name stays there.
    std::optional<QString> executablePath() const;
    /// The `.icns` file that CFBundleIconFile names (with or without its extension), when it stays
    /// inside the bundle; not looked for on the disk.
    std::optional<QString> iconPath() const;
};

/// Reads a bundle; never fails: what cannot be read is absent.
Bundle readBundle(const FileSystem& files, const QString& path);

/// True for a bundle that holds "Wrapper/iTunesMetadata.plist".
bool isWrappedApplication(const FileSystem& files, const QString& path);

/// "Maple" for "Maple.app", in any case; a name that is nothing but the extension stays.
QString withoutApplicationExtension(QString name);

/// The name on the disk as people see it: without ".app", and with the slash for which a disk has ":".
QString nameOnDisk(const QString& path);

/// The name that the Finder shows for a bundle, without ".app": a localized one when the bundle says so
/// (its unlocalized display name is the name on the disk, or LSHasLocalizedDisplayName), in the first
/// of the user's languages that the bundle speaks, else in the one that it was developed in; else the
/// name on the disk. `languages` in order of preference ("de", "zh-Hant-HK").
QString finderDisplayName(const FileSystem& files, const Bundle& bundle, const QStringList& languages);

/// The files besides the Info.plist that the Finder's name of a bundle may depend on, whether they
/// exist or not; none for most bundles.
QStringList displayNameSources(const Bundle& bundle, const QStringList& languages);

} // namespace tessellar
