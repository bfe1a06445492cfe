#pragma once

#include "model/json.h"
#include "platform/file_system.h"

namespace tessellar {

/// Identifies a file, to tell whether an item is still the one that was reviewed.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    FileType type = FileType::other;

    bool operator==(const FileIdentity&) const = default;
};
/// For identities read from disk, possibly after a restart: ignores the device, as its number may have
/// changed.
inline bool isSameOnItsVolume(const FileIdentity& a, const FileIdentity& b) {
    return a.inode == b.inode && a.type == b.type;
}
inline FileIdentity identityOf(const FileStatus& status) {
    return {status.device, status.inode, status.type};
}

namespace json {

template <>
struct RawValues<FileType> : EnumeratorNames<FileType::other> {};

/// Field codec: bytes as Base64.
struct Base64 {
    static Decoded<QByteArray> decode(const QJsonValue& value);
    static QJsonValue encode(const QByteArray& value);
};
/// Field codec: all 64 bits as decimal text, as JSON numbers are exact only to 53.
struct DecimalU64 {
    static Decoded<std::uint64_t> decode(const QJsonValue& value);
    static QJsonValue encode(std::uint64_t value);
};

template <>
struct Fields<FileIdentity> {
    static constexpr auto list = fields(required<DecimalU64>("device", &FileIdentity::device),
                                        required<DecimalU64>("inode", &FileIdentity::inode),
                                        required("type", &FileIdentity::type));
};

} // namespace json
} // namespace tessellar
