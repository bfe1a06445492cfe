#include "platform/property_list_document.h"

#include <pugixml.hpp>

#include <charconv>
#include <cmath>
#include <cstring>

namespace tessellar {

using Kind = PropertyListDocument::Kind;

namespace {

constexpr std::string_view whiteSpace = " \t\r\n";

/// Pugixml keeps each element's text in the element, resolves the five entities and character
/// references, and skips DTDs.
constexpr unsigned parseFlags = pugi::parse_escapes | pugi::parse_eol | pugi::parse_cdata |
                                pugi::parse_embed_pcdata | pugi::parse_ws_pcdata_single;

struct ElementKind {
    std::string_view name;
    Kind kind;
};
constexpr ElementKind elementKinds[] = {
    {"string", Kind::text},     {"true", Kind::trueValue}, {"false", Kind::falseValue},
    {"dict", Kind::dictionary}, {"array", Kind::array},    {"integer", Kind::integer},
    {"real", Kind::real},       {"data", Kind::base64},    {"date", Kind::date},
};

std::string_view trimmedView(std::string_view text) {
    const std::size_t first = text.find_first_not_of(whiteSpace);
    return first == text.npos ? std::string_view()
                              : text.substr(first, text.find_last_not_of(whiteSpace) - first + 1);
}

class XmlReader {
public:
    explicit XmlReader(const PropertyListLimits& limits) : _limits(limits) {}

    std::expected<PropertyListDocument, PropertyListError> read(const QByteArray& bytes) {
        std::string text(bytes.constData(), static_cast<std::size_t>(bytes.size()));
        if (!looksLikeXml(text))
            return std::unexpected(PropertyListError::notAPropertyList);
        if (text.size() > 65'536 && tooManyElements(text))
            return std::unexpected(PropertyListError::tooManyNodes);
        pugi::xml_document xml;
        const pugi::xml_parse_result parsed =
            xml.load_buffer_inplace(text.data(), text.size(), parseFlags);
        if (!parsed)
            return std::unexpected(PropertyListError::damaged);
        pugi::xml_node root = xml.document_element();
        if (root && std::strcmp(root.name(), "plist") == 0) {
            root = root.first_child();
            if (!root || root.next_sibling())
                return std::unexpected(PropertyListError::damaged);
        } else if (!kindOf(root)) {
            return std::unexpected(PropertyListError::notAPropertyList);
        }
        _document.bytes.reserve(text.size() / 2);
        _document.nodes.reserve(text.size() / 24);
        if (!value(root, 0))
            return std::unexpected(_error);
        return std::move(_document);
    }

private:
    static bool looksLikeXml(std::string_view text) {
        // Byte order marks and wide encodings: pugixml detects them.
        constexpr std::string_view skipped("\xEF\xBB\xBF\xFE\xFF \t\r\n\0", 10);
        const std::size_t first = text.find_first_not_of(skipped);
        return first != text.npos && text[first] == '<';
    }

    /// Pugixml uses 64 bytes for an element of four, so they are counted before it parses millions.
    bool tooManyElements(std::string_view text) const {
        std::uint64_t elements = 0;
        for (std::size_t at = text.find('<'); at != text.npos; at = text.find('<', at + 1))
            elements += at + 1 < text.size() && text[at + 1] != '/' && text[at + 1] != '!';
        return elements > _limits.nodes + 16;
    }

    static const ElementKind* kindOf(pugi::xml_node element) {
        const std::string_view name = element.name();
        for (const ElementKind& known : elementKinds) {
            if (known.name == name)
                return &known;
        }
        return nullptr;
    }

    bool fail(PropertyListError error) {
        _error = error;
        return false;
    }
    bool damaged() { return fail(PropertyListError::damaged); }

    bool value(pugi::xml_node element, int depth) {
        const ElementKind* known = kindOf(element);
        if (!known)
            return damaged();
        if (_document.nodes.size() >= _limits.nodes)
            return fail(PropertyListError::tooManyNodes);
        switch (known->kind) {
        case Kind::array:
        case Kind::dictionary:
            return container(element, known->kind, depth + 1);
        case Kind::trueValue:
        case Kind::falseValue:
            _document.add(known->kind);
            return true;
        case Kind::text:
        case Kind::base64:
            return text(element, known->kind);
        default:
            return scalar(element, known->kind);
        }
    }

    bool container(pugi::xml_node element, Kind kind, int depth) {
        if (depth > _limits.depth)
            return fail(PropertyListError::tooDeep);
        if (!trimmedView(element.value()).empty())
            return damaged();
        const std::size_t index = _document.nodes.size();
        _document.add(kind);
        for (pugi::xml_node child = element.first_child(); child; child = child.next_sibling()) {
            if (kind == Kind::dictionary) {
                if (std::strcmp(child.name(), "key") != 0)
                    return damaged();
                if (_document.nodes.size() >= _limits.nodes)
                    return fail(PropertyListError::tooManyNodes);
                if (!text(child, Kind::text))
                    return false;
                child = child.next_sibling();
            }
            if (!value(child, depth))
                return false;
        }
        _document.nodes[index].end = _document.size();
        return true;
    }

    /// The text of an element, joined from the pieces between comments and CDATA sections.
    bool text(pugi::xml_node element, Kind kind) {
        std::string& bytes = _document.bytes;
        const std::size_t start = bytes.size();
        bytes += element.value();
        for (pugi::xml_node piece = element.first_child(); piece; piece = piece.next_sibling()) {
            if (piece.type() == pugi::node_element)
                return damaged();
            bytes += piece.value();
        }
        _document.addSlice(kind, start, bytes.size() - start);
        return true;
    }

    bool scalar(pugi::xml_node element, Kind kind) {
        if (element.first_child())
            return damaged();
        const std::string_view text = trimmedView(element.value());
        switch (kind) {
        case Kind::integer:
            return integer(text);
        case Kind::real:
            return real(text);
        default:
            return date(text);
        }
    }

    bool integer(std::string_view written) {
        std::string_view text = written;
        const bool negative = text.starts_with('-');
        if (negative || text.starts_with('+'))
            text.remove_prefix(1);
        const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
        if (hexadecimal)
            text.remove_prefix(2);
        quint64 magnitude = 0;
        const char* const last = text.data() + text.size();
        const auto [end, error] = std::from_chars(text.data(), last, magnitude, hexadecimal ? 16 : 10);
        if (text.empty() || end != last || error == std::errc::invalid_argument)
            return damaged();
        constexpr quint64 most = std::numeric_limits<qint64>::max();
        if (error == std::errc::result_out_of_range)
            return hexadecimal ? damaged() : real(written);
        if (magnitude > most + (negative ? 1 : 0))
            _document.addReal(Kind::real, (negative ? -1 : 1) * static_cast<double>(magnitude));
        else
            _document.addInteger(static_cast<qint64>(negative ? 0 - magnitude : magnitude));
        return true;
    }

    bool real(std::string_view text) {
        if (text.starts_with('+'))
            text.remove_prefix(1);
        double number = 0;
        const char* const last = text.data() + text.size();
        const auto [end, error] = std::from_chars(text.data(), last, number);
        if (text.empty() || end != last || error != std::errc())
            return damaged();
        _document.addReal(Kind::real, number);
        return true;
    }

    bool date(std::string_view text) {
        // Do not let QDateTime parse texts of any length.
        const auto instant = text.size() > 40 ? std::nullopt
                                              : Instant::fromIso8601(QString::fromUtf8(
                                                    text.data(), static_cast<qsizetype>(text.size())));
        if (!instant)
            return damaged();
        _document.addReal(Kind::date, instant->secondsSince2001);
        return true;
    }

    const PropertyListLimits& _limits;
    PropertyListDocument _document;
    PropertyListError _error = PropertyListError::damaged;
};

} // namespace

std::expected<PropertyListDocument, PropertyListError>
readXmlPropertyList(const QByteArray& bytes, const PropertyListLimits& limits) {
    return XmlReader(limits).read(bytes);
}

} // namespace tessellar
