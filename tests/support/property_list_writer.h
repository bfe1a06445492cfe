#pragma once

#include "platform/property_list.h"

#include <string>
#include <vector>

namespace tessellar::test {

/// The XML form of a property list, as bundles have it.
inline QByteArray xmlElement(const PropertyValue& value) {
    const auto element = [](const char* name, const QByteArray& text) -> QByteArray {
        return QByteArray("<") + name + '>' + text + "</" + name + ">\n";
    };
    if (const auto flag = value.boolean())
        return *flag ? "<true/>\n" : "<false/>\n";
    if (const auto integer = value.integer())
        return element("integer", QByteArray::number(*integer));
    if (const auto number = value.number())
        return element("real", QByteArray::number(*number, 'g', 17));
    if (const auto text = value.text())
        return element("string", text->toHtmlEscaped().toUtf8());
    if (const auto data = value.data())
        return element("data", data->toBase64());
    if (const auto date = value.date())
        return element("date", date->toIso8601().toUtf8());
    QByteArray inner;
    if (value.isArray()) {
        for (const PropertyValue& child : value.array())
            inner += xmlElement(child);
        return element("array", inner);
    }
    const PropertyValue::Dictionary entries = value.dictionary();
    for (auto entry = entries.begin(); entry != entries.end(); ++entry)
        inner += element("key", entry.key().toHtmlEscaped().toUtf8()) + xmlElement(entry.value());
    return element("dict", inner);
}

inline QByteArray toXmlPropertyList(const PropertyValue& value) {
    return R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0">
)" + xmlElement(value) +
           "</plist>\n";
}

/// A binary list of objects as they are given, the first one on top; references and offsets of two and
/// four bytes. Nothing is checked: hostile lists are made with it.
class BinaryListBuilder {
public:
    /// Adds an object's bytes and gives its number.
    unsigned add(const std::string& bytes) {
        _offsets.push_back(_body.size());
        _body += bytes;
        return static_cast<unsigned>(_offsets.size() - 1);
    }
    unsigned text(const std::string& ascii) { return add(marker(0x5, ascii.size()) + ascii); }
    unsigned array(const std::vector<unsigned>& children) {
        return add(marker(0xA, children.size()) + references(children));
    }
    /// Keys, then values.
    unsigned dictionary(const std::vector<unsigned>& keys, const std::vector<unsigned>& values) {
        return add(marker(0xD, keys.size()) + references(keys) + references(values));
    }

    QByteArray bytes(unsigned top = 0) const {
        std::string result = _body;
        for (const std::size_t offset : _offsets)
            result += bigEndian(offset, 4);
        result += std::string(6, '\0') + '\4' + '\2' + bigEndian(_offsets.size(), 8) +
                  bigEndian(top, 8) + bigEndian(_body.size(), 8);
        return QByteArray::fromStdString(result);
    }

    static std::string marker(unsigned kind, std::size_t count) {
        if (count < 15)
            return {static_cast<char>(kind << 4 | count)};
        return static_cast<char>(kind << 4 | 0xF) + std::string("\x12") + bigEndian(count, 4);
    }
    static std::string bigEndian(std::size_t value, int width) {
        std::string result;
        for (int shift = 8 * (width - 1); shift >= 0; shift -= 8)
            result += static_cast<char>(value >> shift & 0xFF);
        return result;
    }
    static std::string references(const std::vector<unsigned>& numbers) {
        std::string result;
        for (const unsigned number : numbers)
            result += bigEndian(number, 2);
        return result;
    }

private:
    std::string _body = "bplist00";
    std::vector<std::size_t> _offsets;
};

} // namespace tessellar::test
