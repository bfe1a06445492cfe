#pragma once

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_view_model.h"

#include <QAbstractListModel>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tessellar {

/// The items that may go, in the order of the review. Sizes and choices change single rows.
class RemovalItems final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

public:
    enum Role {
        PathRole = Qt::UserRole,
        NameRole,
        PlaceRole,
        ReasonRole,
        SizeRole,
        SelectedRole,
        LockedRole ///< needs an administrator
    };

    explicit RemovalItems(const LauncherCleanup& cleanup) : _cleanup(cleanup) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;
    void refresh();

private:
    /// What of a row changes while it is shown.
    struct Row {
        std::optional<std::uint64_t> size;
        bool isSelected = false;

        bool operator==(const Row&) const = default;
    };

    const QList<RelatedFile>& items() const { return _cleanup.review().items; }

    const LauncherCleanup& _cleanup;
    std::vector<Row> _rows;
};

/// The sheet of a removal in QML's terms.
class RemovalPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed)
    Q_PROPERTY(QString phase READ phase NOTIFY changed) ///< the name of the launcher's
    Q_PROPERTY(QString appName READ appName NOTIFY changed)
    Q_PROPERTY(tessellar::RemovalItems* items READ items CONSTANT)
    Q_PROPERTY(QString total READ total NOTIFY changed)
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY changed)
    Q_PROPERTY(QString warning READ warning NOTIFY changed)
    Q_PROPERTY(double progress READ progress NOTIFY changed) ///< from 0 to 1
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed)
    Q_PROPERTY(QVariantList log READ log NOTIFY changed) ///< {text, isFailure}
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed)
    Q_PROPERTY(QString lockText READ lockText CONSTANT)

public:
    explicit RemovalPanel(LauncherViewModel& viewModel)
        : _viewModel(viewModel), _items(viewModel.cleanup()) {}

    bool isOpen() const { return _viewModel.cleanup().phase() != LauncherCleanup::Phase::idle; }
    QString phase() const;
    QString appName() const;
    RemovalItems* items() { return &_items; }
    QString total() const;
    bool canRemove() const;
    QString warning() const;
    double progress() const;
    QString progressText() const;
    QVariantList log() const;
    bool canRestore() const { return _viewModel.cleanup().canRestore(); }
    static QString lockText() { return administratorMark; }

    Q_INVOKABLE void select(const QString& path, bool isSelected);
    Q_INVOKABLE void remove();
    /// Ends what is under way, or closes.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void restore();
    /// Shows what is so now: once a turn of the event loop, however many sizes have come in it.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    LauncherViewModel& _viewModel;
    RemovalItems _items;
    bool _isRefreshWanted = false;
};

} // namespace tessellar
