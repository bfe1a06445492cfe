#pragma once

#include <QByteArray>
#include <QList>
#include <QMap>
#include <QString>

namespace tessellar {

/// Types that every desktop supports, by their macOS names.
namespace pasteboard {
inline const QString text = QStringLiteral("public.utf8-plain-text"); ///< UTF-8
inline const QString fileUrl = QStringLiteral("public.file-url");     ///< one URL, UTF-8
} // namespace pasteboard

/// One item in one or more representations.
struct PasteboardItem {
    QMap<QString, QByteArray> data; ///< by type

    bool operator==(const PasteboardItem&) const = default;
};

/// The system's clipboard. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// The current contents. Untrusted: any program may have written them.
    virtual QList<PasteboardItem> items() const = 0;
    /// Replaces the contents; false if the system refuses.
    virtual bool write(const QList<PasteboardItem>& items) = 0;
};

/// Private to this program: for the command line and tests.
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
