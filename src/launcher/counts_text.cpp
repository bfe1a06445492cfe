#include "launcher/counts_text.h"

#include "platform/texts.h"

#include <QStringList>

namespace tessellar {

QString countsText(int applications, int folders, int pages) {
    QStringList parts{applications == 1 ? Texts::tr("1 application")
                                        : Texts::tr("%n applications", nullptr, applications)};
    if (folders > 0)
        parts.append(folders == 1 ? Texts::tr("1 folder") : Texts::tr("%n folders", nullptr, folders));
    parts.append(pages == 1 ? Texts::tr("1 page") : Texts::tr("%n pages", nullptr, pages));
    return parts.join(QStringLiteral(", "));
}

} // namespace tessellar
