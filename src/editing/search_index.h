#pragma once

#include "model/layout_document.h"
#include "platform/text.h"

#include <QHash>

#include <memory>
#include <vector>

namespace tessellar {

/// Ranks applications by how well their names match a query. Names are preprocessed when the
/// arrangement changes, so a keystroke only compares. Copies share the index; concurrent searches are
/// safe.
class SearchIndex {
public:
    struct Hit {
        std::shared_ptr<const AppEntry> entry; ///< never null; outlives the index
        double score = 0;                      ///< higher is better
    };

    struct Input {
        /// Traversed depth first. Hidden tiles are skipped: `hiddenApps` has their applications.
        Pages pages;
        QSet<QString> hiddenKeys;
        QList<AppEntry> hiddenApps;
        /// The applications of alias tiles, by app key.
        QHash<QString, AppEntry> catalogue;
        /// The names of the smart folders containing an application, by app key.
        QHash<QString, QStringList> additionalNames;
    };

    SearchIndex() = default;
    SearchIndex(const Input& input, const Locale& locale);

    /// All matching applications, best first, then by name, without duplicates.
    QList<Hit> search(const QString& query) const;

private:
    struct Data;
    std::shared_ptr<const Data> _data;
};

/// The input for a layout and the last scan. If an application has its own tile, that tile's entry is
/// used, with the user's name for it.
SearchIndex::Input searchInput(const LayoutDocument& layout, const QList<AppEntry>& scannedApps,
                               const QHash<QString, QStringList>& additionalNames = {});

} // namespace tessellar
