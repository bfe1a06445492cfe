#pragma once

#include "sample/plist.h"

#include <QByteArray>
#include <QDateTime>
#include <QMap>
#include <QString>
#include <QStringList>

#include <map>
#include <optional>
#include <vector>

namespace tessellar::sample {

/// Where an application's names in other languages are written.
enum class LocalizationForm { stringsUtf16, stringsUtf8, propertyList, loctable };

/// What a bundle lacks that is still being copied or was damaged.
enum class Missing { nothing, info, executable, contents };

/// What `codesign` says of a bundle.
struct Signature {
    enum class Kind { none, adHoc, developerId, appStore, system };
    Kind kind = Kind::none;
    QString developer; ///< of `developerId`: the name in its authority
    QString team;      ///< of `developerId` and `appStore`
};

/// What the store wrote beside an iPhone application that runs on the Mac.
struct WrappedMetadata {
    QString realName; ///< of the bundle in "Wrapper", without ".app"
    qint64 itemId = 0;
    QString itemName;
    QStringList categories;
    QString artistName;
    QString genre;
    bool launchProhibited = false;
    bool withLink = true; ///< "WrappedBundle"
};

/// One application to be made. Everything but the name can be left as it is:
///     mac.addApplication({.name = u"Fern"_s, .identifier = u"com.example.fern"_s});
/// A value that is missing (std::nullopt) leaves its key out of the Info.plist.
struct Application {
    QString name; ///< on the disk, without the extension
    /// Where the bundle lies; for a nested one relative to the bundle around it
    /// ("Contents/Applications").
    QString folder = QStringLiteral("/Applications");
    QString extension = QStringLiteral("app");
    std::optional<QString> identifier = std::nullopt;
    std::optional<QString> version = QStringLiteral("1.0");
    std::optional<QString> build = QStringLiteral("1");
    std::optional<QString> category = std::nullopt; ///< such as "public.app-category.utilities"
    std::optional<QString> minimumSystem = std::nullopt;
    std::optional<QString> displayName = std::nullopt; ///< CFBundleDisplayName
    std::optional<QString> rights = std::nullopt;      ///< NSHumanReadableCopyright
    QStringList privacyKeys = {};                      ///< such as "NSCameraUsageDescription"
    std::optional<QString> sparkleFeed = std::nullopt; ///< SUFeedURL; brings the framework with it
    bool sparkleFramework = false;
    bool receipt = false;                                 ///< of the App Store
    std::optional<qint64> storeIdentifier = std::nullopt; ///< what Spotlight says
    std::optional<WrappedMetadata> wrapped = std::nullopt;
    QMap<QString, QString> localizedNames = {}; ///< by language
    LocalizationForm localizationForm = LocalizationForm::stringsUtf8;
    bool isAgent = false; ///< LSUIElement
    /// CFBundleExecutable; the application's name unless given. Nothing that leaves the bundle is
    /// written.
    std::optional<QString> executable = std::nullopt;
    QStringList architectures = {QStringLiteral("x86_64"), QStringLiteral("arm64")};
    Signature signature = {};
    Missing missing = Missing::nothing;
    QByteArray icon = {}; ///< the bytes of an .icns file; for a wrapped application of a PNG
    QString iconFile = QStringLiteral("AppIcon"); ///< CFBundleIconFile, with or without its extension
    PlistForm plistForm = PlistForm::xml;
    Plist::Dictionary info = {};                      ///< further or other values of the Info.plist
    std::vector<Application> nested = {};             ///< helpers, and tools in "Contents/Applications"
    std::optional<QDateTime> modified = std::nullopt; ///< of the bundle and all in it
};

/// Builds a Mac in a folder of the host, piece by piece. Paths are the Mac's; missing folders on the
/// way to a piece are made. A later piece replaces an earlier one of the same path.
///
/// The first thing that cannot be written is kept as `failure` and said on standard error, and what
/// follows is left undone: callers may check once, at the end.
class MacBuilder {
public:
    explicit MacBuilder(const QString& hostRoot);

    QString hostRoot() const { return _root; }
    QString hostPath(const QString& path) const { return _root + path; }

    /// Where the tools' stand-ins keep what they answer, see tools.h.
    static QString toolData() { return QStringLiteral("/private/var/tessellar-sample"); }

    /// Returns the path of the bundle.
    QString addApplication(const Application& application);

    void addDirectory(const QString& path);
    void addFile(const QString& path, const QByteArray& bytes, unsigned mode = 0644);
    void addExecutable(const QString& path, const QByteArray& bytes) { addFile(path, bytes, 0755); }
    void addPropertyList(const QString& path, const Plist& value, PlistForm form = PlistForm::binary);
    /// A symbolic link that says `target`.
    void addLink(const QString& path, const QString& target);
    /// A Finder alias file.
    void addAlias(const QString& path, const QString& target);

    /// The folders that every Mac has, "/var" and its like, and the home with its Libraries.
    void addStandardFolders(const QString& home = QStringLiteral("/Users/ada"));

    /// The date of `path` and of what lies in it, from `settleDates` on.
    void setModified(const QString& path, const QDateTime& date) { _dates[path] = date; }
    /// Gives every file, folder and link the date set for it or for the nearest folder around it, or
    /// else `date`. The last thing to do, for whatever is added later changes its folder's date.
    void settleDates(const QDateTime& date);

    std::optional<QString> failure() const { return _failure; }
    /// Keeps the first failure; for those who write a piece of their own.
    void fail(const QString& path, const QString& reason);

private:
    void addBundle(const QString& path, const Application& application);
    void addWrapped(const QString& path, const Application& application);
    void addLocalizations(const QString& resources, const Application& application);
    void addAnswers(const QString& path, const QString& executable, const Application& application);
    void clear(const QString& path); ///< what lies at a path where something else is to lie

    QString _root;
    std::map<QString, QDateTime> _dates;
    std::optional<QString> _failure;
};

/// The beginning of a program for these architectures: true headers, no code.
QByteArray executableBytes(const QStringList& architectures);

} // namespace tessellar::sample
