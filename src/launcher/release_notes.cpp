#include "launcher/release_notes.h"

#include "platform/settings.h"

#include <QStringList>
#include <QVersionNumber>

namespace tessellar {

QString releaseNotes(const QString& changelog, const QString& last, const QString& current) {
    const QVersionNumber from = QVersionNumber::fromString(last);
    const QVersionNumber to = QVersionNumber::fromString(current);
    const QString heading = QStringLiteral("## ");
    QStringList lines;
    bool isTold = false;
    for (const QString& line : changelog.split(u'\n')) {
        if (line.startsWith(heading)) {
            const auto version = QVersionNumber::fromString(line.sliced(heading.size()).trimmed());
            isTold = version > from && version <= to;
        }
        if (isTold)
            lines.append(line);
    }
    return lines.join(u'\n').trimmed();
}

QString ReleaseNotes::unseen(const Settings& settings, const QString& changelog,
                             const QString& version) {
    const auto last = settings.text(lastVersionKey);
    return last && *last != version ? releaseNotes(changelog, *last, version) : QString();
}

ReleaseNotes::Welcome ReleaseNotes::welcome(const Settings& settings, bool isUnarranged,
                                            const QString& changelog, const QString& version) {
    return {.news = unseen(settings, changelog, version),
            .asksHowToBegin = isUnarranged && !settings.value(lastVersionKey)};
}

} // namespace tessellar
