#include "icons/custom_app_icon_store.h"

#include "icons/icns_file.h"
#include "model/json_file.h"
#include "platform/texts.h"

#include <QCryptographicHash>

#include <utility>

namespace tessellar {

namespace {
constexpr auto iconSuffix = ".icns";
constexpr auto recordSuffix = ".macos-icon.json";
constexpr auto originalSuffix = ".original.tiff";
constexpr std::uint64_t maximumRecordBytes = 1u << 20;
} // namespace

QString message(CustomAppIconStore::Error error) {
    using enum CustomAppIconStore::Error;
    switch (error) {
    case notICNSFile:
        return Texts::tr("Only .icns files can be used as custom app icons.");
    case unreadableFile:
        return Texts::tr("The selected .icns file could not be read.");
    case invalidICNSFile:
        return Texts::tr("The selected file is not a valid .icns icon.");
    case fileTooLarge:
        return Texts::tr("The selected .icns file is too large.");
    case couldNotSave:
        return Texts::tr("Tessellar could not save the custom icon.");
    case couldNotRemove:
        return Texts::tr("Tessellar could not remove the custom icon.");
    }
    return {};
}

CustomAppIconStore::CustomAppIconStore(const FileSystem& files, QString directory, Locale locale,
                                       std::shared_ptr<const IconDecoder> decoder, FileAccess access)
    : _files(files)
    , _directory(std::move(directory))
    , _locale(std::move(locale))
    , _decoder(std::move(decoder))
    , _access(std::move(access)) {
    refresh();
}

QString CustomAppIconStore::defaultDirectory(const Places& places,
                                             const std::optional<QString>& bundleIdentifier) {
    const QString support =
        places.applicationSupport.isEmpty()
            ? FileSystem::joined(places.library(), QStringLiteral("Application Support"))
            : places.applicationSupport;
    const QString folder =
        FileSystem::joined(support, bundleIdentifier.value_or(applicationIdentifier));
    return FileSystem::joined(folder, QStringLiteral("Custom Icons"));
}

QString CustomAppIconStore::baseName(const QString& appKey) {
    return QString::fromLatin1(
        QCryptographicHash::hash(appKey.toUtf8(), QCryptographicHash::Sha256).toHex());
}

QString CustomAppIconStore::path(const QString& appKey, const char* suffix) const {
    return FileSystem::joined(_directory, baseName(appKey) + QLatin1StringView(suffix));
}

// ---- import

CustomAppIconStore::Result<QByteArray> CustomAppIconStore::readIcon(const QString& file,
                                                                    const FileSystem& files) const {
    if (_locale.lowercased(FileSystem::extension(file)) != _locale.lowercased(u"icns"))
        return std::unexpected(Error::notICNSFile);
    const std::shared_ptr<void> access = _access ? _access(file) : nullptr;

    const auto status = files.status(file);
    if (!status || status->type != FileType::regular)
        return std::unexpected(Error::unreadableFile);
    if (status->size > maximumFileBytes)
        return std::unexpected(Error::fileTooLarge);
    auto bytes = files.read(file, maximumFileBytes);
    if (!bytes) // it may have grown since
        return std::unexpected(bytes.error().code == FileError::Code::tooLarge ? Error::fileTooLarge
                                                                               : Error::unreadableFile);
    if (!IcnsFile::hasExactLength(*bytes) || _decoder->imageCount(*bytes) < 1 ||
        _decoder->image(*bytes, 0).isNull())
        return std::unexpected(Error::invalidICNSFile);
    return *std::move(bytes);
}

CustomAppIconStore::Result<void> CustomAppIconStore::writeIcon(const QByteArray& checkedBytes,
                                                               const QString& appKey) const {
    return write(path(appKey, iconSuffix), checkedBytes);
}

void CustomAppIconStore::note(const QString& appKey, bool hasIcon) {
    if (hasIcon)
        _known.insert(baseName(appKey));
    else
        _known.remove(baseName(appKey));
}

CustomAppIconStore::Result<void> CustomAppIconStore::importIcon(const QString& file,
                                                                const QString& appKey) {
    const auto bytes = readIcon(file);
    if (!bytes)
        return std::unexpected(bytes.error());
    const auto written = writeIcon(*bytes, appKey);
    if (written)
        note(appKey, true);
    return written;
}

// ---- lookup

std::optional<QString> CustomAppIconStore::iconPath(const QString& appKey) const {
    const QString icon = path(appKey, iconSuffix);
    return _files.isRegularFile(icon) ? std::optional(icon) : std::nullopt;
}

std::optional<QString> CustomAppIconStore::knownIconPath(const QString& appKey) const {
    if (_known.isEmpty() || !_known.contains(baseName(appKey)))
        return std::nullopt;
    return path(appKey, iconSuffix);
}

QSet<QString> CustomAppIconStore::keysWithIcon(const QStringList& appKeys) const {
    QSet<QString> keys;
    for (const QString& key : appKeys)
        if (knownIconPath(key))
            keys.insert(key);
    return keys;
}

void CustomAppIconStore::refresh() {
    _known.clear();
    const auto entries = _files.entries(_directory);
    if (!entries)
        return;
    for (const DirectoryEntry& entry : *entries)
        if (entry.name.endsWith(iconSuffix))
            _known.insert(QString::fromLatin1(entry.name.chopped(qstrlen(iconSuffix))));
}

// ---- removal and key changes

CustomAppIconStore::Result<void> CustomAppIconStore::deleteFiles(const QString& appKey) const {
    // The icon is removed last: while it is there, the removal can be repeated.
    for (const char* suffix : {originalSuffix, recordSuffix, iconSuffix})
        if (const auto removed = removeFile(path(appKey, suffix)); !removed)
            return removed;
    return {};
}

CustomAppIconStore::Result<void> CustomAppIconStore::removeIcon(const QString& appKey) {
    const auto removed = deleteFiles(appKey);
    note(appKey, iconPath(appKey).has_value());
    return removed;
}

CustomAppIconStore::Result<void> CustomAppIconStore::changeKey(const QString& from, const QString& to) {
    if (from == to || !iconPath(from) || iconPath(to))
        return {};
    // The icon is moved last: after a failure, the next attempt completes the move.
    for (const char* suffix : {recordSuffix, originalSuffix, iconSuffix}) {
        const auto moved = _files.move(path(from, suffix), path(to, suffix));
        if (!moved && moved.error().code != FileError::Code::notFound &&
            moved.error().code != FileError::Code::alreadyExists)
            return std::unexpected(Error::couldNotSave);
    }
    _known.remove(baseName(from));
    _known.insert(baseName(to));
    return {};
}

// ---- applied icons

CustomAppIconStore::Result<void>
CustomAppIconStore::writeAppliedIconRecord(const AppliedIconRecord& record, const QString& appKey) {
    AppliedIconRecord written = record;
    written.appPath = FileSystem::standardized(record.appPath);
    return write(path(appKey, recordSuffix), json::write(json::encode(written)));
}

std::optional<AppliedIconRecord> CustomAppIconStore::appliedIconRecord(const QString& appKey) const {
    StoredFile file(_files, path(appKey, recordSuffix), maximumRecordBytes);
    return loadJson<AppliedIconRecord>(file).value_or(std::nullopt);
}

CustomAppIconStore::Result<void> CustomAppIconStore::removeAppliedIconRecord(const QString& appKey) {
    return removeFile(path(appKey, recordSuffix));
}

CustomAppIconStore::Result<void> CustomAppIconStore::writeOriginalIcon(const QByteArray& tiff,
                                                                       const QString& appKey) {
    return write(path(appKey, originalSuffix), tiff);
}

std::optional<QByteArray> CustomAppIconStore::originalIcon(const QString& appKey) const {
    const auto bytes = _files.read(path(appKey, originalSuffix), maximumFileBytes);
    return bytes ? std::optional(*bytes) : std::nullopt;
}

CustomAppIconStore::Result<void> CustomAppIconStore::removeOriginalIcon(const QString& appKey) {
    return removeFile(path(appKey, originalSuffix));
}

// ---- files

CustomAppIconStore::Result<void> CustomAppIconStore::write(const QString& path,
                                                           const QByteArray& bytes) const {
    if (!StoredFile(_files, path, maximumFileBytes).write(bytes))
        return std::unexpected(Error::couldNotSave);
    return {};
}

CustomAppIconStore::Result<void> CustomAppIconStore::removeFile(const QString& path) const {
    const auto removed = _files.remove(path);
    if (!removed && removed.error().code != FileError::Code::notFound)
        return std::unexpected(Error::couldNotRemove);
    return {};
}

} // namespace tessellar
