#pragma once

#include "platform/stored_file.h"
#include "smartfolders/smart_folder_definition.h"

#include <functional>
#include <variant>

namespace tessellar {

/// How a registry that was moved aside is dealt with: put back for another try, or left aside for a new
/// and empty one.
enum class SmartFolderRecovery { restore, replace };

/// Keeps the definitions of all smart folders, which both display modes share.
///
///     computed-folders.json                          the registry
///     computed-folders.recovery.json                 the marker: a registry lies aside
///     computed-folders.corrupt-STAMP-TAG.json        a registry that could not be read, byte for byte
///
/// A registry that cannot be read, nor at a second try, is moved aside and named by the marker, and
/// nothing is saved until a registry has been read again. The marker is written first: killed between
/// the two, the registry still stands and is moved at the next load. Until the first load, too, nothing
/// is saved.
///
/// Main thread only.
class SmartFolderStore {
public:
    static constexpr qint64 supportedVersion = 1;
    /// What is read and written at most.
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

    /// `beforeStep` is called before each change of a file; what it throws ends the work there.
    SmartFolderStore(const FileSystem& files, QString directory, const Clock& clock, UuidSource& uuids,
                     std::function<void()> beforeStep = {});

    static QString fileName() { return QStringLiteral("computed-folders.json"); }
    const QString& directory() const { return _directory; }
    /// Where the last registry was moved that could not be read, as far as it is known.
    const std::optional<QString>& lastQuarantinedPath() const { return _lastQuarantinedPath; }
    bool isWriteBlocked() const { return _writeBlocked; }

    LoadResult load();
    std::expected<void, Error> save(const QList<SmartFolderDefinition>& definitions);
    /// Deals with what blocks saving; ends with a load and gives its result, the last error when it did
    /// not come to that. A registry that can be read is neither replaced nor restored over.
    LoadResult recover(SmartFolderRecovery how);

    /// The first problem of a registry: identifiers that repeat, a definition with validation issues.
    static std::expected<void, StoreError> check(const QList<SmartFolderDefinition>& definitions);

private:
    const QString& registryPath() const { return _registry.path(); }
    QString markerPath() const;
    bool registryStands() const;
    std::optional<QString> markedPath() const; ///< where the marker says that a registry lies
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
