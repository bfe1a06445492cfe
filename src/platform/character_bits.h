#pragma once

#include <QByteArrayView>
#include <QStringView>

#include <cstdint>

namespace tessellar {

/// A 64-bit set of the characters in a text, hashed: a text whose set lacks a bit of another's cannot
/// contain it. Rules out most texts with one instruction when searching many for a few words.
class CharacterBits {
public:
    CharacterBits() = default;
    explicit CharacterBits(QByteArrayView text) { add(text); }
    explicit CharacterBits(QStringView text) { add(text); }

    bool containsAll(CharacterBits others) const { return (others._bits & ~_bits) == 0; }

private:
    void add(const auto& text) {
        for (const auto c : text)
            _bits |= std::uint64_t(1) << (unit(c) & 63);
    }
    static unsigned unit(char c) { return static_cast<unsigned char>(c); }
    static unsigned unit(QChar c) { return c.unicode(); }

    std::uint64_t _bits = 0;
};

} // namespace tessellar
