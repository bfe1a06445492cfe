#pragma once

#include "model/json.h"
#include "platform/background_file.h"
#include "platform/texts.h"

namespace tessellar {

// Reads and writes files that hold one JSON document. `File` is a StoredFile or a BackgroundFile.

/// Why a document could not be loaded.
struct JsonFileError {
    enum class Kind {
        unreadable,   ///< a read error, perhaps temporary; the contents are unknown
        damaged,      ///< read, but not a valid document
        newerVersion, ///< written by a later version of the launcher
    };
    Kind kind = Kind::unreadable;
    QString text; ///< one sentence
};

/// nullopt if there is certainly no file. If the document type declares a `supportedVersion`, earlier
/// versions count as damaged.
template <typename Document, typename File>
std::expected<std::optional<Document>, JsonFileError> loadJson(File& file) {
    const auto bytes = file.read();
    if (!bytes)
        return std::unexpected(JsonFileError{JsonFileError::Kind::unreadable, message(bytes.error())});
    if (!*bytes)
        return std::nullopt;
    const auto value = json::parse(**bytes);
    if constexpr (requires { Document::supportedVersion; })
        // First of all: the version decides the form of the rest.
        if (value &&
            value->toObject().value(QStringLiteral("version")).toInteger() > Document::supportedVersion)
            return std::unexpected(JsonFileError{
                JsonFileError::Kind::newerVersion,
                Texts::tr("“%1” is from a later version of Tessellar.").arg(file.path())});
    auto document = value ? json::decode<Document>(*value) : std::unexpected(value.error());
    if constexpr (requires { Document::supportedVersion; })
        if (document && document->version != Document::supportedVersion)
            document = json::fail(Texts::tr("Version %1 is not supported.").arg(document->version));
    if (!document)
        return std::unexpected(
            JsonFileError{JsonFileError::Kind::damaged, json::message(document.error())});
    return *std::move(document);
}

/// What is done for files that are not essential with what was loaded: a damaged file, or one of a
/// later version, is set aside so that a new one can be written. While the file is unreadable or cannot
/// be set aside, it is not written.
template <typename Loaded, typename File>
Loaded setAsideIfDamaged(Loaded loaded, File& file, const Clock& clock, UuidSource& uuids) {
    if (!loaded && loaded.error().kind != JsonFileError::Kind::unreadable) {
        const auto aside = file.setAside(clock, uuids.next());
        loaded.error().text +=
            aside ? Texts::tr(" It is kept as %1.").arg(*aside)
                  : Texts::tr(" It could not be set aside and stays: ") + message(aside.error());
    }
    return loaded;
}

/// As `loadJson`, for such files.
template <typename Document, typename File>
std::expected<std::optional<Document>, JsonFileError> loadJsonOrSetAside(File& file, const Clock& clock,
                                                                         UuidSource& uuids) {
    return setAsideIfDamaged(loadJson<Document>(file), file, clock, uuids);
}

/// Encodes and writes synchronously.
template <typename Document>
std::expected<void, FileError> saveJson(StoredFile& file, const Document& document) {
    return file.write(json::write(json::encode(document)));
}

/// Encodes and writes on a worker.
template <typename Document>
BackgroundFile::Ticket saveJson(BackgroundFile& file, Document document) {
    return file.write([document = std::move(document)]() -> std::expected<QByteArray, FileError> {
        return json::write(json::encode(document));
    });
}

} // namespace tessellar
