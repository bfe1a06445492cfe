#pragma once

#include "model/items.h"

#include <QSet>

#include <random>

namespace tessellar::test {

/// Arrangements made from a seed, and small ones made by hand. Tiles are numbered; the number is in the
/// identifier, the name and the bundle identifier.
inline QUuid tileID(unsigned number) { return QUuid(number, 1, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0); }

inline AppEntry app(unsigned number, const QString& name = {}) {
    AppEntry entry;
    entry.id = tileID(number);
    entry.name = name.isNull() ? QStringLiteral("App %1").arg(number) : name;
    entry.originalName = entry.name;
    entry.bundleIdentifier = QStringLiteral("org.example.app%1").arg(number);
    entry.path = QStringLiteral("/Applications/App %1.app").arg(number);
    return entry;
}

inline FolderEntry folder(unsigned number, const Pages& pages,
                          const QString& name = QStringLiteral("Folder")) {
    FolderEntry entry;
    entry.id = tileID(number);
    entry.name = name;
    entry.pages = pages;
    return entry;
}

class Generator {
public:
    explicit Generator(unsigned seed) : _engine(seed) {}

    int below(int bound) { return std::uniform_int_distribution<int>(0, bound - 1)(_engine); }
    bool chance(int percent) { return below(100) < percent; }
    template <typename List>
    const auto& pick(const List& list) {
        return list.at(below(static_cast<int>(list.size())));
    }

    unsigned nextNumber() { return ++_last; }

    LaunchpadItem item(int depth) {
        if (depth > 0 && chance(25))
            return folder(nextNumber(), pages(1 + below(2), 2, 4, depth - 1));
        if (chance(10))
            return SmartFolderReference{tileID(nextNumber())};
        return app(nextNumber());
    }

    Pages pages(int count, int least, int most, int depth) {
        Pages result;
        for (int i = 0; i < count; ++i) {
            Page page;
            for (int n = least + below(most - least + 1); n > 0; --n)
                page.append(item(depth));
            result.append(page);
        }
        return result;
    }

    QSet<QString> hiddenKeys(const Pages& pages, int percent) {
        QSet<QString> result;
        forEachItem(pages, [&](const LaunchpadItem& tile) {
            if (const AppEntry* entry = tile.app(); entry && chance(percent))
                result.insert(appKey(*entry));
            return true;
        });
        return result;
    }

private:
    std::mt19937 _engine;
    unsigned _last = 0;
};

} // namespace tessellar::test
