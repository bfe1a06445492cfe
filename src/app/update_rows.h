#pragma once

#include "launcher/launcher_view_model.h"
#include "model/items.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <vector>

namespace tessellar {

/// The lines of the sheet about updates: applications in sections, those that matter most first. What
/// comes, goes and changes does so line by line, so that the keyboard stays where it is.
class UpdateRows final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

public:
    enum Role {
        AppKeyRole = Qt::UserRole, ///< empty for the title of a section
        NameRole,                  ///< of the application or the section
        TextRole,
        DetailRole, ///< an updater's own words, or what the update brings
        SourceRole,
        ActionRole, ///< what its button says; empty for none
        CanActRole,
        RunningRole, ///< its update runs, or waits for its turn
        FailureRole,
        OpenRole, ///< of a section whose applications are listed
    };

    explicit UpdateRows(const LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void refresh();
    /// Lists the applications of a section, or no longer. Only that of what cannot be checked, which is
    /// mostly long, begins closed.
    void toggle(int row);
    QString appKey(int row) const;

private:
    enum class Section { available, updated, held, failed, unchecked };
    struct Row {
        Section section = Section::available;
        QString appKey;
        QString name;
        QString text;
        QString detail;
        QString source;
        QString action;
        bool canAct = false;
        bool isRunning = false;
        bool isFailure = false;
        bool isOpen = false;

        bool isSame(const Row& other) const {
            return appKey == other.appKey && (!appKey.isEmpty() || section == other.section);
        }
        bool operator==(const Row&) const = default;
    };

    std::vector<Row> rows() const;
    std::optional<Section> sectionOf(const QString& appKey) const;
    Row rowOf(const AppEntry& app, Section section) const;

    const LauncherViewModel& _viewModel;
    std::vector<Row> _rows;
    std::array<bool, 5> _isClosed{false, false, false, false, true};
};

} // namespace tessellar
