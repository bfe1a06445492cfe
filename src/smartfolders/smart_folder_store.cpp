#include "smartfolders/smart_folder_store.h"

#include "platform/texts.h"

namespace tessellar {

namespace {

const QString quarantinePrefix = QStringLiteral("computed-folders.corrupt");

/// Decoded first, because it decides the format of the definitions.
struct Version {
    qint64 version = 0;
};

struct Document {
    qint64 version = SmartFolderStore::supportedVersion;
    QList<SmartFolderDefinition> definitions;
};

} // namespace

namespace json {

template <>
struct Fields<Version> {
    static constexpr auto list = fields(required("version", &Version::version));
};
template <>
struct Fields<Document> {
    static constexpr auto list = fields(required("version", &Document::version),
                                        required("definitions", &Document::definitions));
};

using Marker = SmartFolderStore::RecoveryMarker;

static constexpr auto markerFields =
    fields(required("version", &Marker::version),
           required("quarantinedFilename", &Marker::quarantinedFilename),
           required("quarantinedAt", &Marker::quarantinedAt));

Decoded<Marker> Codec<Marker>::decode(const QJsonValue& value) {
    return decodeRecord<Marker>(value, markerFields);
}
QJsonValue Codec<Marker>::encode(const Marker& marker) { return encodeRecord(marker, markerFields); }

} // namespace json

namespace {

std::expected<QList<SmartFolderDefinition>, SmartFolderStore::Error> decode(const QByteArray& bytes) {
    const auto value = json::parse(bytes);
    if (!value)
        return std::unexpected(value.error());
    const auto version = json::decode<Version>(*value);
    if (!version)
        return std::unexpected(version.error());
    if (version->version != SmartFolderStore::supportedVersion)
        return std::unexpected(
            SmartFolderStore::StoreError(SmartFolderStore::UnsupportedVersion{version->version}));
    auto document = json::decode<Document>(*value);
    if (!document)
        return std::unexpected(document.error());
    if (const auto checked = SmartFolderStore::check(document->definitions); !checked)
        return std::unexpected(checked.error());
    return std::move(document->definitions);
}

} // namespace

SmartFolderStore::SmartFolderStore(const FileSystem& files, QString directory, const Clock& clock,
                                   UuidSource& uuids, std::function<void()> beforeStep)
    : _files(files)
    , _directory(std::move(directory))
    , _clock(clock)
    , _uuids(uuids)
    , _beforeStep(std::move(beforeStep))
    , _registry(files, FileSystem::joined(_directory, fileName()), maximumBytes) {}

QString SmartFolderStore::markerPath() const {
    return FileSystem::joined(_directory, QStringLiteral("computed-folders.recovery.json"));
}

bool SmartFolderStore::registryExists() const { return _files.linkStatus(registryPath()).has_value(); }

void SmartFolderStore::step() const {
    if (_beforeStep)
        _beforeStep();
}

std::expected<void, SmartFolderStore::StoreError>
SmartFolderStore::check(const QList<SmartFolderDefinition>& definitions) {
    QSet<QUuid> seen;
    QSet<QUuid> seenRules;
    for (const SmartFolderDefinition& definition : definitions) {
        if (seen.contains(definition.id))
            return std::unexpected(DuplicateDefinitionID{definition.id});
        seen.insert(definition.id);
        if (!validationIssues(definition).isEmpty())
            return std::unexpected(InvalidDefinition{definition.id});
        for (const SmartFolderRule& rule : definition.rules) {
            const QUuid id = rule.id();
            if (seenRules.contains(id))
                return std::unexpected(DuplicateRuleID{id, definition.id});
            seenRules.insert(id);
        }
    }
    return {};
}

SmartFolderStore::LoadResult SmartFolderStore::load() {
    auto bytes = _registry.read();
    if (!bytes)
        bytes = _registry.read(); // once more: a transient error is no reason to quarantine it
    if (bytes && !*bytes)
        return loadWithoutRegistry();
    auto definitions = bytes ? decode(**bytes) : std::unexpected(Error(bytes.error()));
    if (!definitions) {
        _writeBlocked = true;
        // If it cannot be moved, it is left in place, and writing stays blocked.
        (void)quarantine();
        return Failed{definitions.error()};
    }
    _writeBlocked = false;
    step();
    (void)_files.remove(markerPath()); // a leftover marker does no harm while the registry exists
    return Loaded{*std::move(definitions)};
}

SmartFolderStore::LoadResult SmartFolderStore::loadWithoutRegistry() {
    const auto marker = _files.linkStatus(markerPath());
    _writeBlocked = marker || marker.error().code != FileError::Code::notFound;
    if (!_writeBlocked)
        return Missing();
    // Even a damaged marker means that a registry was quarantined.
    if (const auto path = markedPath())
        _lastQuarantinedPath = path;
    return Failed{StoreError(RecoveryRequired())};
}

std::optional<QString> SmartFolderStore::markedPath() const {
    const auto bytes = _files.read(markerPath(), maximumBytes);
    const auto marker = bytes ? json::decodeDocument<RecoveryMarker>(*bytes)
                              : json::Decoded<RecoveryMarker>(json::fail(QString()));
    if (!marker || !marker->quarantinedFilename.startsWith(quarantinePrefix + u'-') ||
        marker->quarantinedFilename.contains(u'/'))
        return std::nullopt;
    return FileSystem::joined(_directory, marker->quarantinedFilename);
}

std::expected<void, FileError> SmartFolderStore::quarantine() {
    QString name;
    do
        name = StoredFile::stampedName(quarantinePrefix, _clock, _uuids.next());
    while (_files.linkStatus(FileSystem::joined(_directory, name)));

    const RecoveryMarker marker{.quarantinedFilename = name, .quarantinedAt = _clock.now()};
    step();
    if (const auto written = _files.writeAtomically(markerPath(), json::write(json::encode(marker)));
        !written)
        return written;
    const QString path = FileSystem::joined(_directory, name);
    step();
    if (const auto moved = _files.move(registryPath(), path); !moved)
        return moved;
    _registry.forget();
    _lastQuarantinedPath = path;
    return {};
}

std::expected<void, SmartFolderStore::Error>
SmartFolderStore::write(const QList<SmartFolderDefinition>& definitions) {
    const QByteArray bytes = json::write(json::encode(Document{.definitions = definitions}));
    step();
    if (const auto written = _registry.write(bytes); !written)
        return std::unexpected(written.error());
    return {};
}

std::expected<void, SmartFolderStore::Error>
SmartFolderStore::save(const QList<SmartFolderDefinition>& definitions) {
    const auto save = saving(definitions);
    return save ? (*save)() : std::unexpected(save.error());
}

std::expected<SmartFolderStore::Save, SmartFolderStore::Error>
SmartFolderStore::saving(const QList<SmartFolderDefinition>& definitions) {
    if (_writeBlocked)
        return std::unexpected(StoreError(WriteBlocked()));
    if (const auto checked = check(definitions); !checked)
        return std::unexpected(checked.error());
    return [this, definitions] { return write(definitions); };
}

SmartFolderStore::LoadResult SmartFolderStore::recover(SmartFolderRecovery how) {
    // An existing registry is tried first; if it cannot be quarantined, its error is final.
    LoadResult result = load();
    if (!_writeBlocked || registryExists())
        return result;
    if (how == SmartFolderRecovery::restore) {
        const auto path = markedPath();
        if (!path)
            return result;
        step();
        if (const auto moved = _files.move(*path, registryPath()); !moved)
            return Failed{moved.error()};
    } else if (const auto written = write({}); !written) {
        return Failed{written.error()};
    }
    return load();
}

QString message(const SmartFolderStore::StoreError& error) {
    // In the order of the cases.
    static constexpr std::array texts{
        Texts::noop("Unsupported Smart Folder registry version %1."),
        Texts::noop("The Smart Folder registry contains an invalid definition."),
        Texts::noop("The Smart Folder registry contains a duplicate definition identifier."),
        Texts::noop("The Smart Folder registry contains a duplicate rule identifier."),
        Texts::noop(
            "Smart Folders cannot be saved until the quarantined registry is recovered or replaced."),
        Texts::noop("A quarantined Smart Folder registry needs recovery."),
    };
    const QString text = Texts::tr(texts[error.index()]);
    const auto* unsupported = std::get_if<SmartFolderStore::UnsupportedVersion>(&error);
    return unsupported ? text.arg(unsupported->version) : text;
}

QString message(const SmartFolderStore::Error& error) {
    if (const auto* damage = std::get_if<json::DecodeError>(&error))
        return Texts::tr("The Smart Folder registry is damaged: %1").arg(message(*damage));
    return std::visit([](const auto& e) { return message(e); }, error);
}

} // namespace tessellar
