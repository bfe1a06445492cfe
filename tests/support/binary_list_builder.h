#pragma once

#include <QByteArray>

#include <string>
#include <vector>

namespace tessellar::test {

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
