#pragma once

#include "model/layout_document.h"
#include "platform/text.h"

#include <QHash>

#include <memory>
#include <vector>

namespace tessellar {

/// Ranks applications by how well their names match a query. Names are made ready once, when the
/// arrangement changes, so that a keystroke only compares; a copy shares them. Any thread may search.
class SearchIndex {
public:
    struct Hit {
        std::shared_ptr<const AppEntry> entry; ///< never null; outlives the index
        double score = 0;                      ///< higher is better
    };

    struct Input {
        /// Walked depth first. Hidden tiles are passed over: their applications come with `hiddenApps`.
        Pages pages;
        QSet<QString> hiddenKeys;
        QList<AppEntry> hiddenApps;
        /// What alias tiles stand for, by app key.
        QHash<QString, AppEntry> catalogue;
        /// The names of the smart folders that show an application, by its app key.
        QHash<QString, QStringList> additionalNames;
    };

    SearchIndex() = default;
    SearchIndex(const Input& input, const Locale& locale);

    /// All applications that match, best first, those of equal score by name. Each is there once.
    QList<Hit> search(const QString& query) const;

private:
    struct Data;
    std::shared_ptr<const Data> _data;
};

/// The input for a layout and the applications of the last scan: an application that has a tile of its
/// own goes by the tile's entry, which has the name that the user gave.
SearchIndex::Input searchInput(const LayoutDocument& layout, const QList<AppEntry>& scannedApps,
                               const QHash<QString, QStringList>& additionalNames = {});

} // namespace tessellar
