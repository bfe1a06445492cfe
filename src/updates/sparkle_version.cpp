#include "updates/sparkle_version.h"

#include "platform/text.h"

namespace tessellar {

namespace {

/// In ascending order: decides if the parts of two versions differ in kind.
enum class Kind { letters, dash, separator, end, digits };

struct Part {
    Kind kind = Kind::end;
    QStringView text;
};

Kind kindOf(QChar c) {
    if (c >= u'0' && c <= u'9')
        return Kind::digits;
    if (c == u'-')
        return Kind::dash;
    return c.isSpace() || c.isPunct() || c.isSymbol() ? Kind::separator : Kind::letters;
}

/// Removes and returns the first part.
Part take(QStringView& rest) {
    if (rest.isEmpty())
        return {};
    const Kind kind = kindOf(rest[0]);
    qsizetype size = 1;
    while (kind != Kind::separator && kind != Kind::dash && size < rest.size() &&
           kindOf(rest[size]) == kind)
        ++size;
    const Part part{kind, rest.first(size)};
    rest = rest.sliced(size);
    return part;
}

/// True for a suffix that adds nothing to a version: ".0.0".
bool isNothing(QStringView rest) {
    while (!rest.isEmpty()) {
        const Part separator = take(rest);
        const Part number = take(rest);
        if (separator.kind != Kind::separator || number.kind != Kind::digits ||
            number.text.count(u'0') != number.text.size())
            return false;
    }
    return true;
}

QStringView withoutPrefix(QStringView version) {
    return version.size() > 1 && (version[0] == u'v' || version[0] == u'V') &&
                   kindOf(version[1]) == Kind::digits
               ? version.sliced(1)
               : version;
}

} // namespace

std::strong_ordering compareSparkle(QStringView a, QStringView b) {
    a = withoutPrefix(a);
    b = withoutPrefix(b);
    while (!a.isEmpty() && !b.isEmpty()) {
        const Part left = take(a);
        const Part right = take(b);
        if (left.kind != right.kind)
            return left.kind <=> right.kind;
        if (left.kind == Kind::digits || left.kind == Kind::letters)
            if (const auto order = compareNumeric(left.text, right.text); order != 0)
                return order;
    }
    if (isNothing(a) && isNothing(b))
        return std::strong_ordering::equal;
    // One of them ends here. The longer one is newer, unless the rest begins a pre-release.
    const auto more = [](QStringView rest) {
        while (isNothing(rest.first(std::min<qsizetype>(rest.size(), 2))) && rest.size() > 2)
            rest = rest.sliced(2);
        const Kind kind = take(rest).kind;
        return kind == Kind::letters || kind == Kind::dash ? std::strong_ordering::less
                                                           : std::strong_ordering::greater;
    };
    return a.isEmpty() ? 0 <=> more(b) : more(a);
}

} // namespace tessellar
