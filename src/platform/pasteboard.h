#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

namespace tessellar {

/// Types of data that every desktop understands, under the Mac's names.
namespace pasteboard {
inline const QString text = QStringLiteral("public.utf8-plain-text"); ///< UTF-8
inline const QString fileUrl = QStringLiteral("public.file-url");     ///< one URL, UTF-8
} // namespace pasteboard

/// One thing on the pasteboard, in as many forms as it has.
struct PasteboardItem {
    QMap<QString, QByteArray> data; ///< by type

    bool operator==(const PasteboardItem&) const = default;
};

/// What programs exchange by copying and pasting. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// The current contents. Any program may have put them there: do not trust them.
    virtual QList<PasteboardItem> items() const = 0;
    /// Replaces everything on the pasteboard; false when the system does not take it.
    virtual bool write(const QList<PasteboardItem>& items) = 0;
};

/// A pasteboard of this program alone: for the command line and for tests.
class MemoryPasteboard final : public Pasteboard {
public:
    QList<PasteboardItem> items() const override { return _items; }
    bool write(const QList<PasteboardItem>& items) override {
        _items = items;
        return true;
    }

private:
    QList<PasteboardItem> _items;
};

} // namespace tessellar
