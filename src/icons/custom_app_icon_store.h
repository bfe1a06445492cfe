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

/// What was put onto an application's bundle in the system itself.
struct AppliedIconRecord {
    QString appPath; ///< standardized
    /// The bundle carried a custom icon of its own before: restoring puts that one back.
    bool originalIconWasCustom = false;

    bool operator==(const AppliedIconRecord&) const = default;
};

template <>
struct json::Fields<AppliedIconRecord> {
    static constexpr auto list =
        fields(required("appPath", &AppliedIconRecord::appPath),
               required("originalIconWasCustom", &AppliedIconRecord::originalIconWasCustom));
};

/// The icons that the user gave to applications: for each app key a private copy of an `.icns` file,
/// and what has to be remembered when it is also put onto the bundle in the system. Files are named by
/// the SHA-256 digest of the key.
///
/// Main thread only, but for what is said to be good for any. Which keys have an icon is kept in
/// memory: asking for it costs no file system call.
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
    /// Opens access to a file that the user chose, where the system guards it; the access ends when the
    /// value goes.
    using FileAccess = std::function<std::shared_ptr<void>(const QString& path)>;

    CustomAppIconStore(const FileSystem& files, QString directory, Locale locale,
                       std::shared_ptr<const IconDecoder> decoder = std::make_shared<QtIconDecoder>(),
                       FileAccess access = {});

    /// "Custom Icons" in the application's folder; an empty Application Support stands for none.
    static QString
    defaultDirectory(const Places& places,
                     const std::optional<QString>& bundleIdentifier = applicationIdentifier);
    /// 64 lower-case hexadecimal digits.
    static QString baseName(const QString& appKey);

    /// Checks the file and keeps a copy of it as the icon of the app key. After a failure an earlier
    /// icon is untouched.
    Result<void> importIcon(const QString& file, const QString& appKey);

    // The same in steps, for those who let a worker do what asks the disk. Any thread may call these
    // three; what they did is to be noted on the main thread.
    Result<QByteArray> readIcon(const QString& file) const { return readIcon(file, _files); }
    Result<QByteArray> readIcon(const QString& file, const FileSystem& files) const;
    Result<void> writeIcon(const QByteArray& checkedBytes, const QString& appKey) const;
    Result<void> deleteFiles(const QString& appKey) const;
    void note(const QString& appKey, bool hasIcon);

    /// The icon's file, when it exists. Any thread.
    std::optional<QString> iconPath(const QString& appKey) const;
    /// The same by what is known in memory.
    std::optional<QString> knownIconPath(const QString& appKey) const;
    /// Those of the keys that have an icon.
    QSet<QString> keysWithIcon(const QStringList& appKeys) const;
    /// Looks at the folder again.
    void refresh();

    /// Deletes the icon, and the record and the backup that belong to it. What is not there is no
    /// failure.
    Result<void> removeIcon(const QString& appKey);
    /// An application is known by another key now: what is kept for it goes along, unless the new key
    /// has an icon already.
    Result<void> changeKey(const QString& from, const QString& to);

    // For a service that puts icons onto bundles.
    Result<void> writeAppliedIconRecord(const AppliedIconRecord& record, const QString& appKey);
    std::optional<AppliedIconRecord> appliedIconRecord(const QString& appKey) const;
    Result<void> removeAppliedIconRecord(const QString& appKey);
    /// TIFF data, as it was before the custom icon came.
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
