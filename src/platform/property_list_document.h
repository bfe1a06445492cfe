#pragma once

#include "platform/property_list.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace tessellar {

/// The parsed nodes of a property list, in document order: containers before their contents, keys
/// before values. Immutable once parsed.
struct PropertyListDocument {
    enum class Kind : std::uint8_t {
        absent,
        falseValue,
        trueValue,
        integer,
        real,
        date,
        text,     ///< UTF-8, unvalidated
        wideText, ///< UTF-16, big-endian
        data,
        base64, ///< data as text, in the XML form
        array,
        dictionary,
    };

    struct Slice {
        std::uint32_t offset = 0; ///< into `bytes`
        std::uint32_t length = 0;
    };

    struct Node {
        union {
            qint64 integer = 0;
            double real; ///< or a date, in seconds since 2001
            Slice slice; ///< of text and data
        };
        std::uint32_t end = 0; ///< index past its last descendant
        Kind kind = Kind::absent;
    };

    std::string bytes;
    std::vector<Node> nodes;

    std::string_view view(const Node& node) const {
        return std::string_view(bytes).substr(node.slice.offset, node.slice.length);
    }
    QString text(const Node& node) const;

    std::uint32_t size() const { return static_cast<std::uint32_t>(nodes.size()); }
    void add(Kind kind) { nodes.push_back({.integer = 0, .end = size() + 1, .kind = kind}); }
    void addInteger(qint64 value) {
        nodes.push_back({.integer = value, .end = size() + 1, .kind = Kind::integer});
    }
    void addReal(Kind kind, double value) {
        nodes.push_back({.real = value, .end = size() + 1, .kind = kind});
    }
    void addSlice(Kind kind, std::size_t offset, std::size_t length) {
        const Slice slice{static_cast<std::uint32_t>(offset), static_cast<std::uint32_t>(length)};
        nodes.push_back({.slice = slice, .end = size() + 1, .kind = kind});
    }
};

/// Parsers of the two forms. The caller has checked the size: within the limit and below 2 GiB.
std::expected<PropertyListDocument, PropertyListError>
readXmlPropertyList(const QByteArray& bytes, const PropertyListLimits& limits);
std::expected<PropertyListDocument, PropertyListError>
readBinaryPropertyList(const QByteArray& bytes, const PropertyListLimits& limits);

} // namespace tessellar
