#pragma once

#include "app/grid_model.h"
#include "editing/search_index.h"
#include "launcher/launcher_view_model.h"
#include "launcher/live_layout.h"

#include <QColor>

namespace tessellar {

struct Machine;

/// The search field's text, and pages of results, best first. Pages are filled when first shown.
class TileSearch final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed FINAL)
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::GridModel* results READ results CONSTANT FINAL)

public:
    TileSearch(LauncherViewModel& viewModel, const TileFacts& facts, const Machine& machine);

    bool isActive() const { return !_text.isEmpty(); }
    QString text() const { return _text; }
    void setText(const QString& text);
    void clear() { setText({}); }
    /// Call when the searchable contents have changed.
    void refresh();
    /// Does in advance what the first letter would have to.
    void prepare();

    GridModel* results() { return &_results; }
    const GridModel* results() const { return &_results; }
    /// Out of range pages become the nearest.
    void turnTo(int page);
    const std::optional<QUuid>& selected() const { return _selected; }
    void select(const QUuid& tile);
    /// A marked label as styled text whose marks have a colour.
    Q_INVOKABLE static QString colored(const QString& marked, const QColor& color);
    /// The result in a slot of the current page.
    std::optional<QUuid> resultAt(int slot) const;

Q_SIGNALS:
    void changed();
    void selectionChanged();

private:
    void find();
    void annotate(qsizetype page, QList<TileView>& views);

    LauncherViewModel& _viewModel;
    const Machine& _machine;
    QString _text;
    QList<SearchIndex::Hit> _hits;
    GridModel _results;
    std::optional<QUuid> _selected;
    /// The folder containing each application's tile, by app key; reset when the layout changes.
    std::optional<QHash<QString, QString>> _folders;
};

} // namespace tessellar
