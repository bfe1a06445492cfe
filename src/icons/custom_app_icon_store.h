#pragma once

#include "icons/icon_decoder.h"
#include "model/json.h"
#include "platform/machine.h"

#include <QSet>

#include <expected>
#include <functional>
#include <memory>
#include <optional>

namespace tessellar {

/// A custom icon set on an application's bundle in the system.
struct AppliedIconRecord {
    QString appPath; ///< standardized
    /// The bundle already had a custom icon, which restoring puts back.
    bool originalIconWasCustom = false;

    bool operator==(const AppliedIconRecord&) const = default;
};

template <>
struct json::Fields<AppliedIconRecord> {
    static constexpr auto list =
        fields(required("appPath", &AppliedIconRecord::appPath),
               required("originalIconWasCustom", &AppliedIconRecord::originalIconWasCustom));
};

/// Custom icons given by the user: for each app key a private copy of an `.icns` file, and what is
/// needed if it is also set on the bundle. Files are named by the SHA-256 digest of the key.
///
/// Main thread only, except where noted. The set of keys with an icon is cached, so looking one up
/// makes no file system call.
class CustomAppIconStore {
public:
    enum class Error {
        notICNSFile,
        unreadableFile,
        invalidICNSFile,
        fileTooLarge,
        couldNotSave,
        couldNotRemove,
    };
    template <typename T>
    using Result = std::expected<T, Error>;

    static constexpr std::uint64_t maximumFileBytes = 64u << 20;
    /// Grants access to a file chosen by the user, where the system requires that; destroying the value
    /// ends it.
    using FileAccess = std::function<std::shared_ptr<void>(const QString& path)>;

    CustomAppIconStore(const FileSystem& files, QString directory, Locale locale,
                       std::shared_ptr<const IconDecoder> decoder = std::make_shared<QtIconDecoder>(),
                       FileAccess access = {});

    /// "Custom Icons" in the application's folder; empty if there is no Application Support.
    static QString
    defaultDirectory(const Places& places,
                     const std::optional<QString>& bundleIdentifier = applicationIdentifier);
    /// 64 lower-case hexadecimal digits.
    static QString baseName(const QString& appKey);

    /// Validates the file and stores a copy. On failure an existing icon is unchanged.
    Result<void> importIcon(const QString& file, const QString& appKey);

    // `importIcon` in steps, so that a worker can access the disk. These three are thread-safe; report
    // their results with `note` on the main thread.
    Result<QByteArray> readIcon(const QString& file) const { return readIcon(file, _files); }
    Result<QByteArray> readIcon(const QString& file, const FileSystem& files) const;
    Result<void> writeIcon(const QByteArray& checkedBytes, const QString& appKey) const;
    Result<void> deleteFiles(const QString& appKey) const;
    void note(const QString& appKey, bool hasIcon);

    /// The icon's path, if the file exists. Thread-safe.
    std::optional<QString> iconPath(const QString& appKey) const;
    /// As `iconPath`, from the cache.
    std::optional<QString> knownIconPath(const QString& appKey) const;
    /// The subset of keys that have an icon.
    QSet<QString> keysWithIcon(const QStringList& appKeys) const;
    /// Reads the folder again.
    void refresh();

    /// Deletes the icon with its record and backup. Succeeds if there is none.
    Result<void> removeIcon(const QString& appKey);
    /// Moves everything stored for one key to another, unless that has an icon already.
    Result<void> changeKey(const QString& from, const QString& to);

    // For a service that sets icons on bundles.
    Result<void> writeAppliedIconRecord(const AppliedIconRecord& record, const QString& appKey);
    std::optional<AppliedIconRecord> appliedIconRecord(const QString& appKey) const;
    Result<void> removeAppliedIconRecord(const QString& appKey);
    /// TIFF data of the bundle's icon before the custom one was set.
    Result<void> writeOriginalIcon(const QByteArray& tiff, const QString& appKey);
    std::optional<QByteArray> originalIcon(const QString& appKey) const;
    Result<void> removeOriginalIcon(const QString& appKey);

private:
    QString path(const QString& appKey, const char* suffix) const;
    Result<void> write(const QString& path, const QByteArray& bytes) const;
    Result<void> removeFile(const QString& path) const;

    const FileSystem& _files;
    QString _directory;
    Locale _locale;
    std::shared_ptr<const IconDecoder> _decoder;
    FileAccess _access;
    QSet<QString> _known; ///< base names of the icons
};

/// One sentence for people.
QString message(CustomAppIconStore::Error error);

} // namespace tessellar
