#pragma once

#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <functional>
#include <variant>

namespace tessellar {

/// How to recover from a quarantined registry: restore it and try again, or replace it with an empty
/// one.
enum class SmartFolderRecovery { restore, replace };

/// Stores the definitions of all smart folders, which both display modes share.
///
///     computed-folders.json                          the registry
///     computed-folders.recovery.json                 the marker: a registry is quarantined
///     computed-folders.corrupt-STAMP-TAG.json        an unreadable registry, byte for byte
///
/// A registry that fails to load twice is quarantined and recorded in the marker, and saving is blocked
/// until a registry has been loaded. The marker is written first: if the program is killed in between,
/// the next load moves the registry. Saving is also blocked before the first load.
///
/// Main thread only.
class SmartFolderStore {
public:
    static constexpr qint64 supportedVersion = 1;
    /// Limit for reading and writing.
    static constexpr std::uint64_t maximumBytes = 16u << 20;

    struct RecoveryMarker {
        qint64 version = 1;
        QString quarantinedFilename;
        Instant quarantinedAt;

        bool operator==(const RecoveryMarker&) const = default;
    };

    struct UnsupportedVersion {
        qint64 version = 0;
        bool operator==(const UnsupportedVersion&) const = default;
    };
    struct InvalidDefinition {
        QUuid id;
        bool operator==(const InvalidDefinition&) const = default;
    };
    struct DuplicateDefinitionID {
        QUuid id;
        bool operator==(const DuplicateDefinitionID&) const = default;
    };
    struct DuplicateRuleID {
        QUuid id;
        QUuid definitionID;
        bool operator==(const DuplicateRuleID&) const = default;
    };
    struct WriteBlocked {
        bool operator==(const WriteBlocked&) const = default;
    };
    struct RecoveryRequired {
        bool operator==(const RecoveryRequired&) const = default;
    };
    using StoreError = std::variant<UnsupportedVersion, InvalidDefinition, DuplicateDefinitionID,
                                    DuplicateRuleID, WriteBlocked, RecoveryRequired>;
    using Error = std::variant<StoreError, json::DecodeError, FileError>;

    struct Loaded {
        QList<SmartFolderDefinition> definitions;
        bool operator==(const Loaded&) const = default;
    };
    struct Failed {
        Error error;
        bool operator==(const Failed&) const = default;
    };
    struct Missing {
        bool operator==(const Missing&) const = default;
    };
    using LoadResult = std::variant<Loaded, Failed, Missing>;

    /// `beforeStep` is called before each file change; if it throws, the operation stops there.
    SmartFolderStore(const FileSystem& files, QString directory, const Clock& clock, UuidSource& uuids,
                     std::function<void()> beforeStep = {});

    static QString fileName() { return QStringLiteral("computed-folders.json"); }
    const QString& directory() const { return _directory; }
    /// The path of the last quarantined registry, if known.
    const std::optional<QString>& lastQuarantinedPath() const { return _lastQuarantinedPath; }
    bool isWriteBlocked() const { return _writeBlocked; }

    LoadResult load();
    std::expected<void, Error> save(const QList<SmartFolderDefinition>& definitions);
    /// Checks these definitions. The returned function saves them; it may be called on another thread,
    /// while nothing else is called here.
    using Save = std::function<std::expected<void, Error>()>;
    std::expected<Save, Error> saving(const QList<SmartFolderDefinition>& definitions);
    /// Resolves what blocks saving, then loads and returns the result, or the last error if it got no
    /// further. Never overwrites a readable registry.
    LoadResult recover(SmartFolderRecovery how);

    /// Reports the first problem: duplicate identifiers, or a definition with validation issues.
    static std::expected<void, StoreError> check(const QList<SmartFolderDefinition>& definitions);

private:
    const QString& registryPath() const { return _registry.path(); }
    QString markerPath() const;
    bool registryExists() const;
    std::optional<QString> markedPath() const; ///< of the quarantined registry, by the marker
    LoadResult loadWithoutRegistry();
    std::expected<void, FileError> quarantine();
    std::expected<void, Error> write(const QList<SmartFolderDefinition>& definitions);
    void step() const;

    const FileSystem& _files;
    QString _directory;
    const Clock& _clock;
    UuidSource& _uuids;
    std::function<void()> _beforeStep;
    StoredFile _registry;
    std::optional<QString> _lastQuarantinedPath;
    bool _writeBlocked = true;
};

/// The user-facing sentence.
QString message(const SmartFolderStore::StoreError& error);
QString message(const SmartFolderStore::Error& error);

template <>
struct json::Codec<SmartFolderStore::RecoveryMarker> {
    static Decoded<SmartFolderStore::RecoveryMarker> decode(const QJsonValue& value);
    static QJsonValue encode(const SmartFolderStore::RecoveryMarker& marker);
};

} // namespace tessellar
