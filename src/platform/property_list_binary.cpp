#include "platform/property_list_document.h"

#include <bit>
#include <cmath>

namespace tessellar {

using Kind = PropertyListDocument::Kind;

namespace {

constexpr std::size_t headerSize = 8;
constexpr std::size_t trailerSize = 32;
constexpr std::string_view uidKey = "CF$UID";

/// "bplist00", objects, a table of their offsets, a trailer. Containers refer to objects by number and
/// can share them, or even contain themselves, so limits apply to the expanded tree.
class BinaryReader {
public:
    BinaryReader(const QByteArray& bytes, const PropertyListLimits& limits)
        : _limits(limits), _size(static_cast<std::size_t>(bytes.size())) {
        _document.bytes.reserve(_size + uidKey.size());
        _document.bytes.assign(bytes.constData(), _size);
        _document.bytes += uidKey;
        _bytes = std::string_view(_document.bytes).substr(0, _size);
    }

    std::expected<PropertyListDocument, PropertyListError> read() {
        if (!_bytes.starts_with("bplist0"))
            return std::unexpected(PropertyListError::notAPropertyList);
        if (!trailer() || !object(_top, 0))
            return std::unexpected(_error);
        return std::move(_document);
    }

private:
    struct Span {
        std::size_t offset = 0;
        std::size_t count = 0;
    };

    bool fail(PropertyListError error) {
        _error = error;
        return false;
    }
    bool damaged() { return fail(PropertyListError::damaged); }

    /// Big-endian; the caller has checked the bounds. Of more than eight bytes, the last eight count.
    quint64 number(std::size_t offset, std::size_t width) const {
        quint64 result = 0;
        for (std::size_t i = 0; i < width; ++i)
            result = result << 8 | static_cast<unsigned char>(_bytes[offset + i]);
        return result;
    }

    bool trailer() {
        if (_size < headerSize + 1 + trailerSize)
            return damaged();
        const std::size_t start = _size - trailerSize;
        _offsetWidth = number(start + 6, 1);
        _referenceWidth = number(start + 7, 1);
        _objectCount = number(start + 8, 8);
        _top = number(start + 16, 8);
        const quint64 table = number(start + 24, 8);
        const auto goodWidth = [](std::size_t width) { return width >= 1 && width <= 8; };
        if (!goodWidth(_offsetWidth) || !goodWidth(_referenceWidth) || _top >= _objectCount ||
            table <= headerSize || table > start || _objectCount > (start - table) / _offsetWidth)
            return damaged();
        _table = static_cast<std::size_t>(table);
        _document.nodes.reserve(std::min<std::size_t>(_objectCount, 4'096));
        return true;
    }

    /// True if `count` items of `width` bytes at `offset` end before the table.
    bool fits(std::size_t offset, quint64 count, std::size_t width) const {
        return offset <= _table && count <= (_table - offset) / width;
    }

    /// The count in a marker's low nibble, or in the integer that follows, and where the contents
    /// begin.
    bool counted(std::size_t at, unsigned low, std::size_t width, Span& span) {
        span = {at + 1, low};
        if (low == 0xF) {
            if (!fits(at + 1, 1, 1))
                return damaged();
            const auto marker = static_cast<unsigned char>(_bytes[at + 1]);
            const std::size_t bytes = std::size_t{1} << (marker & 0xF);
            if (marker >> 4 != 1 || bytes > 8 || !fits(at + 2, bytes, 1))
                return damaged();
            span = {at + 2 + bytes, number(at + 2, bytes)};
        }
        return fits(span.offset, span.count, width) || damaged();
    }

    bool object(quint64 reference, int depth) {
        if (reference >= _objectCount)
            return damaged();
        if (_document.nodes.size() >= _limits.nodes)
            return fail(PropertyListError::tooManyNodes);
        const quint64 offset = number(_table + reference * _offsetWidth, _offsetWidth);
        if (offset < headerSize || offset >= _table)
            return damaged();
        const auto at = static_cast<std::size_t>(offset);
        const auto marker = static_cast<unsigned char>(_bytes[at]);
        const unsigned low = marker & 0xF;
        switch (marker >> 4) {
        case 0x0:
            return constant(low);
        case 0x1:
            return integer(at + 1, low);
        case 0x2:
        case 0x3:
            return real(at + 1, low, marker >> 4 == 3);
        case 0x4:
            return slice(at, low, Kind::data, 1);
        case 0x5:
            return slice(at, low, Kind::text, 1);
        case 0x6:
            return slice(at, low, Kind::wideText, 2);
        case 0x8:
            return uid(at + 1, low + 1);
        case 0xA:
        case 0xB:
        case 0xC:
            return array(at, low, depth + 1);
        case 0xD:
            return dictionary(at, low, depth + 1);
        default:
            return damaged();
        }
    }

    bool constant(unsigned low) {
        if (low != 0 && low != 8 && low != 9)
            return damaged();
        _document.add(low == 0 ? Kind::absent : low == 8 ? Kind::falseValue : Kind::trueValue);
        return true;
    }

    bool integer(std::size_t at, unsigned power) {
        const std::size_t width = std::size_t{1} << power;
        if (width > 16 || !fits(at, width, 1))
            return damaged();
        // Up to four bytes are unsigned, eight are signed; sixteen are for what does not fit in eight.
        const auto low = static_cast<qint64>(number(at, width));
        const auto high = width == 16 ? static_cast<qint64>(number(at, 8)) : low >> 63;
        if (high == low >> 63)
            _document.addInteger(low);
        else
            _document.addReal(Kind::real, std::ldexp(static_cast<double>(high), 64) +
                                              static_cast<double>(static_cast<quint64>(low)));
        return true;
    }

    bool real(std::size_t at, unsigned power, bool isDate) {
        const std::size_t width = std::size_t{1} << power;
        if ((width != 4 && width != 8) || !fits(at, width, 1))
            return damaged();
        const double value = width == 4
                                 ? std::bit_cast<float>(static_cast<std::uint32_t>(number(at, 4)))
                                 : std::bit_cast<double>(number(at, 8));
        if (isDate && !std::isfinite(value))
            _document.add(Kind::absent);
        else
            _document.addReal(isDate ? Kind::date : Kind::real, value);
        return true;
    }

    bool slice(std::size_t at, unsigned low, Kind kind, std::size_t width) {
        Span span;
        if (!counted(at, low, width, span))
            return false;
        _expandedBytes += span.count * width;
        if (_expandedBytes > _limits.bytes)
            return fail(PropertyListError::tooLarge);
        _document.addSlice(kind, span.offset, span.count * width);
        return true;
    }

    bool uid(std::size_t at, std::size_t width) {
        if (width > 8 || !fits(at, width, 1))
            return damaged();
        const std::size_t index = _document.nodes.size();
        _document.add(Kind::dictionary);
        _document.addSlice(Kind::text, _size, uidKey.size());
        _document.addInteger(static_cast<qint64>(number(at, width)));
        _document.nodes[index].end = _document.size();
        return true;
    }

    bool array(std::size_t at, unsigned low, int depth) {
        Span span;
        if (depth > _limits.depth)
            return fail(PropertyListError::tooDeep);
        if (!counted(at, low, _referenceWidth, span))
            return false;
        const std::size_t index = _document.nodes.size();
        _document.add(Kind::array);
        for (std::size_t i = 0; i < span.count; ++i) {
            if (!object(number(span.offset + i * _referenceWidth, _referenceWidth), depth))
                return false;
        }
        _document.nodes[index].end = _document.size();
        return true;
    }

    bool dictionary(std::size_t at, unsigned low, int depth) {
        Span span;
        if (depth > _limits.depth)
            return fail(PropertyListError::tooDeep);
        if (!counted(at, low, 2 * _referenceWidth, span))
            return false;
        const std::size_t index = _document.nodes.size();
        _document.add(Kind::dictionary);
        const std::size_t values = span.offset + span.count * _referenceWidth;
        for (std::size_t i = 0; i < span.count; ++i) {
            const std::size_t step = i * _referenceWidth;
            const std::size_t key = _document.nodes.size();
            if (!object(number(span.offset + step, _referenceWidth), depth))
                return false;
            if (_document.nodes[key].kind != Kind::text && _document.nodes[key].kind != Kind::wideText)
                return damaged();
            if (!object(number(values + step, _referenceWidth), depth))
                return false;
        }
        _document.nodes[index].end = _document.size();
        return true;
    }

    const PropertyListLimits& _limits;
    PropertyListDocument _document;
    std::string_view _bytes; ///< the list itself, owned by the document
    std::size_t _size = 0;
    std::size_t _offsetWidth = 0;
    std::size_t _referenceWidth = 0;
    quint64 _objectCount = 0;
    quint64 _top = 0;
    std::size_t _table = 0;           ///< where the objects end and the table begins
    std::uint64_t _expandedBytes = 0; ///< of text and data, counted each time that they are shared
    PropertyListError _error = PropertyListError::damaged;
};

} // namespace

std::expected<PropertyListDocument, PropertyListError>
readBinaryPropertyList(const QByteArray& bytes, const PropertyListLimits& limits) {
    return BinaryReader(bytes, limits).read();
}

} // namespace tessellar
