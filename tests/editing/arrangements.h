#pragma once

#include "model/drawn.h"

#include <QSet>

#include <random>

namespace tessellar::test {

// Arrangements made from a seed, and small ones made by hand. Tiles go by numbers, which are their
// names unless they are given another.
inline QUuid tileID(unsigned number) { return idOf(QString::number(number)); }

inline AppEntry app(unsigned number, const QString& name = {}) {
    AppEntry entry = app(QString::number(number));
    if (!name.isNull())
        entry.name = entry.originalName = name;
    return entry;
}

inline FolderEntry folder(unsigned number, const Pages& pages, const QString& name = {}) {
    FolderEntry entry = folder(QString::number(number), pages);
    if (!name.isNull())
        entry.name = name;
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
