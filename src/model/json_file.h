#pragma once

#include "model/json.h"
#include "platform/background_file.h"
#include "platform/texts.h"

namespace tessellar {

// A stored file of one JSON document, by the document's declaration. `File` is a StoredFile, or a
// BackgroundFile.

/// Why a file's document cannot be had.
struct JsonFileError {
    enum class Kind {
        unreadable, ///< now: a read error, which says nothing of what the file holds
        damaged,    ///< read whole, but no such document
        later,      ///< a later launcher's, who knows what it says
    };
    Kind kind = Kind::unreadable;
    QString text; ///< one sentence
};

/// The document, or nothing where there is certainly no file. What declares its `supportedVersion` is
/// damaged in an earlier one.
template <typename Document, typename File>
std::expected<std::optional<Document>, JsonFileError> loadJson(File& file) {
    const auto bytes = file.read();
    if (!bytes)
        return std::unexpected(JsonFileError{JsonFileError::Kind::unreadable, message(bytes.error())});
    if (!*bytes)
        return std::nullopt;
    const auto value = json::parse(**bytes);
    if constexpr (requires { Document::supportedVersion; })
        // Before the rest, whose form it decides.
        if (value &&
            value->toObject().value(QStringLiteral("version")).toInteger() > Document::supportedVersion)
            return std::unexpected(JsonFileError{
                JsonFileError::Kind::later,
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

/// The same for files that one can do without: what is damaged, or a later launcher's, is set aside
/// beside the file, so that a new one can begin. While the file is unreadable, or cannot be set aside,
/// it is not written.
template <typename Document, typename File>
std::expected<std::optional<Document>, JsonFileError> loadJsonOrSetAside(File& file, const Clock& clock,
                                                                         UuidSource& uuids) {
    auto loaded = loadJson<Document>(file);
    if (!loaded && loaded.error().kind != JsonFileError::Kind::unreadable) {
        const auto aside = file.setAside(clock, uuids.next());
        loaded.error().text +=
            aside ? Texts::tr(" It is kept as %1.").arg(*aside)
                  : Texts::tr(" It could not be set aside and stays: ") + message(aside.error());
    }
    return loaded;
}

/// Encodes and writes here and now.
template <typename Document>
std::expected<void, FileError> saveJson(StoredFile& file, const Document& document) {
    return file.write(json::write(json::encode(document)));
}

/// Hands the document over, to be encoded and written on a worker.
template <typename Document>
BackgroundFile::Ticket saveJson(BackgroundFile& file, Document document) {
    return file.write([document = std::move(document)]() -> std::expected<QByteArray, FileError> {
        return json::write(json::encode(document));
    });
}

} // namespace tessellar
