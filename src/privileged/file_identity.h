#pragma once

#include "model/json.h"
#include "platform/file_system.h"

namespace tessellar {

/// Tells whether an item is still the one that was reviewed.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    FileType type = FileType::other;

    bool operator==(const FileIdentity&) const = default;
};
/// The same for what was written down, perhaps before the machine was restarted: volumes are numbered
/// as they are found.
inline bool isSameOnItsVolume(const FileIdentity& a, const FileIdentity& b) {
    return a.inode == b.inode && a.type == b.type;
}
inline FileIdentity identityOf(const FileStatus& status) {
    return {status.device, status.inode, status.type};
}

namespace json {

template <>
struct RawValues<FileType> : EnumeratorNames<FileType::other> {};

/// Named as a field's codec: bytes as base 64.
struct Data {
    static Decoded<QByteArray> decode(const QJsonValue& value);
    static QJsonValue encode(const QByteArray& value);
};
/// Named as a field's codec: all 64 bits, as decimal text, for a JSON number has but 53.
struct Whole {
    static Decoded<std::uint64_t> decode(const QJsonValue& value);
    static QJsonValue encode(std::uint64_t value);
};

template <>
struct Fields<FileIdentity> {
    static constexpr auto list =
        fields(required<Whole>("device", &FileIdentity::device),
               required<Whole>("inode", &FileIdentity::inode), required("type", &FileIdentity::type));
};

} // namespace json
} // namespace tessellar
