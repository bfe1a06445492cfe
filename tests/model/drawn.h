#pragma once

#include "support/items.h"

namespace tessellar::test {

/// Reads pages until the bracket that closes their folder, or to the end.
inline Pages drawn(QStringView text, qsizetype& at) {
    Pages pages{{}};
    while (at < text.size() && text[at] != u']') {
        const qsizetype start = at;
        if (const QChar next = text[at++]; next == u'|') {
            pages.append(Page());
        } else if (next == u'[') {
            at = text.indexOf(u':', at) + 1;
            const QString name = text.sliced(start + 1, at - start - 2).toString();
            pages.last().append(folder(name, drawn(text, at)));
            ++at;
        } else if (next != u' ') {
            while (at < text.size() && !QStringView(u" |]").contains(text[at]))
                ++at;
            const QString name = text.sliced(start, at - start).toString();
            if (next == u'*')
                pages.last().append(SmartFolderReference{idOf(name.sliced(1))});
            else
                pages.last().append(app(name));
        }
    }
    return pages;
}

/// The pages of a sketch as `sketch` draws them, but for aliases; "*games" is the smart folder of that
/// name.
inline Pages drawn(QStringView text) {
    qsizetype at = 0;
    return text.isEmpty() ? Pages() : drawn(text, at);
}

} // namespace tessellar::test
