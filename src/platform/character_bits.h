#pragma once

#include <QByteArrayView>
#include <QStringView>

#include <cstdint>

namespace tessellar {

/// Which characters a text has, each as one of 64 bits: a text that lacks one of another's does not
/// contain it. One instruction rules a text out where many are searched for a few words.
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
