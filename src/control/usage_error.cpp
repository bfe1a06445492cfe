#include "control/usage_error.h"

#include "platform/texts.h"

#include <QRegularExpression>

namespace tessellar {

namespace {

struct Wording {
    const char* found; ///< a regular expression; its groups are the sentence's arguments
    const char* sentence;
};

constexpr Wording wordings[] = {
    {"^(.+) is required$", Texts::noop("“%1” is missing.")},
    {"^(.+): \\d+ required .+ missing$", Texts::noop("%1 needs a value.")},
    {"^(.+): At least (\\d+) required but received \\d+$", Texts::noop("%1 needs %2 values.")},
    {"^The following arguments? (?:was|were) not expected: (.+)$", Texts::noop("Unexpected: %1")},
    {"^(.+): (.+) not in \\{(.+)\\}$", Texts::noop("%1 cannot be “%2”, but one of these: %3.")},
    {"^(.+): Value (.+) not in range (.+) to (.+)$",
     Texts::noop("%1 cannot be “%2”: it goes from %3 to %4.")},
    {"^(.+) excludes (.+)$", Texts::noop("%1 and %2 do not go together.")},
    {"^Could not convert: (.+) = (.+)$", Texts::noop("%1 cannot be “%2”.")},
};

} // namespace

QString usageSentence(const QString& found) {
    for (const Wording& wording : wordings) {
        const QRegularExpression pattern(QString::fromUtf8(wording.found),
                                         QRegularExpression::DotMatchesEverythingOption);
        const QRegularExpressionMatch match = pattern.match(found);
        if (!match.hasMatch())
            continue;
        // All arguments at once: the user's text may contain a placeholder.
        const auto said = [&](int group) { return match.captured(group); };
        const QString sentence = Texts::tr(wording.sentence);
        switch (match.lastCapturedIndex()) {
        case 1:
            return sentence.arg(said(1));
        case 2:
            return sentence.arg(said(1), said(2));
        case 3:
            return sentence.arg(said(1), said(2), said(3));
        default:
            return sentence.arg(said(1), said(2), said(3), said(4));
        }
    }
    return found;
}

} // namespace tessellar
