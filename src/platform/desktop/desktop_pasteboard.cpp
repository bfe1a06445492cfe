#include "platform/desktop/desktop_pasteboard.h"

#include "platform/machine.h"

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QUrl>

#include <memory>

namespace tessellar {

QList<PasteboardItem> DesktopPasteboard::items() const {
    const QMimeData* mime = QGuiApplication::clipboard()->mimeData();
    if (!mime)
        return {};
    PasteboardItem first;
    for (const QString& format : mime->formats())
        if (format.startsWith(applicationIdentifier))
            first.data.insert(format, mime->data(format));
    if (mime->hasText())
        first.data.insert(pasteboard::text, mime->text().toUtf8());
    QList<PasteboardItem> result{first};
    bool isFirstUrl = true;
    for (const QUrl& url : mime->urls()) {
        if (!url.isLocalFile())
            continue;
        if (!std::exchange(isFirstUrl, false))
            result.append(PasteboardItem());
        result.last().data.insert(pasteboard::fileUrl, url.toEncoded());
    }
    return result.first().data.isEmpty() ? QList<PasteboardItem>() : result;
}

bool DesktopPasteboard::write(const QList<PasteboardItem>& items) {
    auto mime = std::make_unique<QMimeData>();
    QList<QUrl> urls;
    for (const PasteboardItem& item : items) {
        for (const auto& [type, bytes] : item.data.asKeyValueRange()) {
            if (type == pasteboard::fileUrl)
                urls.append(QUrl::fromEncoded(bytes, QUrl::StrictMode));
            else if (type == pasteboard::text && !mime->hasText())
                mime->setText(QString::fromUtf8(bytes));
            else if (type != pasteboard::text && !mime->hasFormat(type))
                mime->setData(type, bytes);
        }
    }
    // After the text: without a text, a list of URLs would set its own.
    if (!urls.isEmpty())
        mime->setUrls(urls);
    const QStringList formats = mime->formats();
    QClipboard* clipboard = QGuiApplication::clipboard();
    clipboard->setMimeData(mime.release());
    // The clipboard does not report success; reading it back does.
    const QMimeData* taken = clipboard->mimeData();
    return taken && taken->formats() == formats;
}

} // namespace tessellar
