#pragma once

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_view_model.h"

#include <QAbstractListModel>
#include <QVariant>
#include <QtQml/qqmlregistration.h>

#include <vector>

namespace tessellar {

/// The removable items, in review order. Sizes and selection update single rows.
class RemovalItems final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

public:
    enum Role {
        PathRole = Qt::UserRole,
        NameRole,
        FolderRole,
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
    struct Row {
        QString path;
        // What changes while it is shown.
        std::optional<std::uint64_t> size;
        bool isSizePartial = false;
        bool isSelected = false;

        bool operator==(const Row&) const = default;
    };

    const QList<RelatedFile>& items() const { return _cleanup.review().items; }

    const LauncherCleanup& _cleanup;
    std::vector<Row> _rows;
};

/// The sheet of a removal, for QML.
class RemovalPanel final : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the controller")
    Q_PROPERTY(bool isOpen READ isOpen NOTIFY changed FINAL)
    Q_PROPERTY(QString phase READ phase NOTIFY changed FINAL) ///< the phase's name
    Q_PROPERTY(QString appName READ appName NOTIFY changed FINAL)
    Q_PROPERTY(tessellar::RemovalItems* items READ items CONSTANT FINAL)
    Q_PROPERTY(QString total READ total NOTIFY changed FINAL) ///< of the selected items
    Q_PROPERTY(
        QString staying READ staying NOTIFY changed FINAL) ///< the items that stay; empty if none
    Q_PROPERTY(bool isAllSelected READ isAllSelected NOTIFY changed FINAL)
    /// The keyboard's row; -1 if none.
    Q_PROPERTY(int currentRow READ currentRow NOTIFY changed FINAL)
    Q_PROPERTY(bool canRemove READ canRemove NOTIFY changed FINAL)
    Q_PROPERTY(bool canCancel READ canCancel NOTIFY changed FINAL)
    Q_PROPERTY(QString noticeTitle READ noticeTitle NOTIFY changed FINAL) ///< title of `warning`
    Q_PROPERTY(QString warning READ warning NOTIFY changed FINAL)
    Q_PROPERTY(double progress READ progress NOTIFY changed FINAL) ///< 0 to 1
    Q_PROPERTY(QString progressText READ progressText NOTIFY changed FINAL)
    Q_PROPERTY(QVariantList log READ log NOTIFY changed FINAL) ///< {text, isFailure}
    Q_PROPERTY(bool canRestore READ canRestore NOTIFY changed FINAL)
    Q_PROPERTY(QString lockText READ lockText CONSTANT FINAL)

public:
    explicit RemovalPanel(LauncherViewModel& viewModel)
        : _viewModel(viewModel), _items(viewModel.cleanup()) {}

    bool isOpen() const { return _viewModel.cleanup().phase() != LauncherCleanup::Phase::idle; }
    QString phase() const;
    QString appName() const;
    RemovalItems* items() { return &_items; }
    QString total() const;
    QString staying() const;
    bool isAllSelected() const;
    int currentRow() const { return _currentRow; }
    bool canRemove() const;
    bool canCancel() const { return !_viewModel.cleanup().isStopping(); }
    QString noticeTitle() const;
    QString warning() const;
    double progress() const;
    QString progressText() const;
    QVariantList log() const;
    bool canRestore() const { return _viewModel.cleanup().canRestore(); }
    static QString lockText() { return administratorMark(); }

    Q_INVOKABLE void select(const QString& path, bool isSelected);
    Q_INVOKABLE void selectAll(bool isSelected);
    Q_INVOKABLE void reveal(const QString& path);
    Q_INVOKABLE void remove();
    /// Stops the operation, or closes the sheet.
    Q_INVOKABLE void cancel();
    Q_INVOKABLE void restore();
    /// Receives all keys while open: arrows and Space select; with Control (Command on macOS) A selects
    /// all, R reveals, Backspace removes.
    void pressKey(int key, bool withControl);
    /// Updates everything; once per turn of the event loop, however many sizes arrive.
    void refresh();

Q_SIGNALS:
    void changed();

private:
    void moveTo(int row);

    LauncherViewModel& _viewModel;
    RemovalItems _items;
    int _currentRow = -1;
    bool _isRefreshWanted = false;
};

} // namespace tessellar
