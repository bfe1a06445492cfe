#include "platform/strings_file.h"

#include <QStringDecoder>

#include <optional>
#include <utility>

namespace tessellar {
namespace {

class StringsReader {
public:
    explicit StringsReader(QStringView text) : _text(text) {}

    PropertyValue::Dictionary entries() {
        PropertyValue::Dictionary result;
        skipBlank();
        take(u'{');
        while (true) {
            const auto key = word();
            if (!key)
                return result;
            skipBlank();
            const auto value = take(u'=') ? word() : key;
            skipBlank();
            if (!value || !(take(u';') || _at == _text.size() || peek() == u'}'))
                return result;
            result.insert(*key, PropertyValue(*value));
        }
    }

private:
    char16_t peek(qsizetype ahead = 0) const {
        return _at + ahead < _text.size() ? _text[_at + ahead].unicode() : u'\0';
    }

    bool take(char16_t wanted) {
        if (_at == _text.size() || peek() != wanted)
            return false;
        ++_at;
        return true;
    }

    void skipTo(QStringView end) {
        const qsizetype found = _text.indexOf(end, _at);
        _at = found < 0 ? _text.size() : found + end.size();
    }

    void skipBlank() {
        while (_at < _text.size()) {
            if (_text[_at].isSpace()) {
                ++_at;
            } else if (peek() == u'/' && peek(1) == u'/') {
                skipTo(u"\n");
            } else if (peek() == u'/' && peek(1) == u'*') {
                _at += 2;
                skipTo(u"*/");
            } else {
                return;
            }
        }
    }

    std::optional<QString> word() {
        skipBlank();
        if (peek() == u'"' || peek() == u'\'')
            return quoted();
        const qsizetype start = _at;
        const auto isPlain = [](QChar c) {
            return c.isLetterOrNumber() || QStringView(u"_.-$:/").contains(c);
        };
        while (_at < _text.size() && isPlain(_text[_at]))
            ++_at;
        return _at > start ? std::optional(_text.sliced(start, _at - start).toString()) : std::nullopt;
    }

    std::optional<QString> quoted() {
        const QChar quote = _text[_at++];
        QString result;
        while (_at < _text.size()) {
            const QChar c = _text[_at++];
            if (c == quote)
                return result;
            if (c == u'\\' && _at < _text.size())
                result += escaped();
            else
                result += c;
        }
        return std::nullopt;
    }

    QChar escaped() {
        static constexpr std::pair<char16_t, char16_t> known[] = {
            {u'n', u'\n'}, {u't', u'\t'}, {u'r', u'\r'}, {u'a', u'\a'},
            {u'b', u'\b'}, {u'f', u'\f'}, {u'v', u'\v'},
        };
        const char16_t c = _text[_at++].unicode();
        if (c == u'U' || c == u'u')
            return number(16, 4);
        if (c >= u'0' && c <= u'7') {
            --_at;
            return number(8, 3);
        }
        for (const auto& [letter, meaning] : known) {
            if (letter == c)
                return meaning;
        }
        return c;
    }

    QChar number(int base, int digits) {
        char16_t value = 0;
        for (; digits > 0; --digits, ++_at) {
            const int digit = QStringView(u"0123456789abcdef").indexOf(QChar(peek()).toLower());
            if (digit < 0 || digit >= base)
                break;
            value = static_cast<char16_t>(value * base + digit);
        }
        return value;
    }

    QStringView _text;
    qsizetype _at = 0;
};

/// Detects the encoding by the byte order mark, or by the zeros of the first character.
QString decoded(const QByteArray& bytes) {
    using Converter = QStringConverter;
    auto encoding = Converter::encodingForData(bytes);
    if (!encoding && bytes.size() >= 2 && (!bytes[0] || !bytes[1]))
        encoding = bytes[0] ? Converter::Utf16LE : Converter::Utf16BE;
    QStringDecoder decoder(encoding.value_or(Converter::Utf8));
    return decoder(bytes);
}

} // namespace

PropertyValue readStringsFile(const QByteArray& bytes) {
    if (bytes.startsWith("bplist"))
        return parsePropertyList(bytes).value_or(PropertyValue());
    const QString text = decoded(bytes);
    if (!QStringView(text).trimmed().startsWith(u'<'))
        return PropertyValue(StringsReader(text).entries());
    return parsePropertyList(bytes).value_or(PropertyValue());
}

} // namespace tessellar
