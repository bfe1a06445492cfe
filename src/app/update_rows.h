#pragma once

#include "launcher/launcher_view_model.h"
#include "model/items.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <array>
#include <optional>
#include <span>
#include <vector>

namespace tessellar {

/// The rows of the updates sheet: applications in sections, most important first. Changes are signalled
/// row by row, so that the keyboard keeps its place.
class UpdateRows final : public QAbstractListModel {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made by the panel")

public:
    enum Role {
        AppKeyRole = Qt::UserRole, ///< empty for a heading
        NameRole,                  ///< of the application or the section
        TextRole,
        DetailRole, ///< an updater's own output, or the release notes
        SourceRole,
        ActionRole, ///< label of its button; may be empty
        CanActRole,
        RunningRole, ///< its update is running or queued
        FailureRole,
        OpenRole, ///< of a heading: the section is expanded
    };

    explicit UpdateRows(const LauncherViewModel& viewModel) : _viewModel(viewModel) {}

    int rowCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

    void refresh();
    /// Expands or collapses a section. Only the section of applications that cannot be checked, usually
    /// a long one, is collapsed initially.
    void toggle(int row);
    QString appKey(int row) const;

private:
    enum class Section { available, updated, held, failed, unchecked };
    /// What a row says.
    struct Words {
        QString name;
        QString text;
        QString detail;
        QString source;
        QString action;
        bool canAct = false;
        bool isRunning = false;
        bool isFailure = false;
        bool isOpen = false;

        bool operator==(const Words&) const = default;
    };
    struct Row {
        Section section = Section::available;
        QString appKey;
        /// None until somebody asks: of thousands of rows a few are seen.
        mutable std::optional<Words> words = {};

        bool isSame(const Row& other) const {
            return appKey == other.appKey && (!appKey.isEmpty() || section == other.section);
        }
    };

    std::vector<Row> rows();
    std::optional<Section> sectionOf(const QString& appKey) const;
    const Words& words(const Row& row) const;
    Words wordsNow(const Row& row) const;
    Words wordsOf(const AppEntry& app, Section section) const;
    void remove(std::size_t first, std::size_t end);
    void insert(std::size_t at, std::span<const Row> rows);
    void replaceMiddle(std::span<const Row> wanted);
    void followRowByRow(std::span<const Row> wanted);
    void refreshWords();

    const LauncherViewModel& _viewModel;
    std::vector<Row> _rows;
    std::array<qsizetype, 5> _counts{}; ///< of applications in each section
    std::array<bool, 5> _isClosed{false, false, false, false, true};
};

} // namespace tessellar
