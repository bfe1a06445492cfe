#include "app/update_rows.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"

#include <algorithm>

namespace tessellar {

int UpdateRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(_rows.size());
}

QHash<int, QByteArray> UpdateRows::roleNames() const {
    return {{AppKeyRole, "appKey"}, {NameRole, "name"},         {TextRole, "text"},
            {DetailRole, "detail"}, {SourceRole, "source"},     {ActionRole, "action"},
            {CanActRole, "canAct"}, {RunningRole, "isRunning"}, {FailureRole, "isFailure"},
            {OpenRole, "isOpen"}};
}

QVariant UpdateRows::data(const QModelIndex& index, int role) const {
    if (index.row() < 0 || index.row() >= rowCount())
        return {};
    const Row& row = _rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case AppKeyRole:
        return row.appKey;
    case NameRole:
        return row.name;
    case TextRole:
        return row.text;
    case DetailRole:
        return row.detail;
    case SourceRole:
        return row.source;
    case ActionRole:
        return row.action;
    case CanActRole:
        return row.canAct;
    case RunningRole:
        return row.isRunning;
    case FailureRole:
        return row.isFailure;
    case OpenRole:
        return row.isOpen;
    default:
        return {};
    }
}

QString UpdateRows::appKey(int row) const {
    return row >= 0 && row < rowCount() ? _rows[static_cast<std::size_t>(row)].appKey : QString();
}

void UpdateRows::toggle(int row) {
    if (row < 0 || row >= rowCount() || !appKey(row).isEmpty())
        return;
    bool& isClosed = _isClosed[static_cast<std::size_t>(_rows[static_cast<std::size_t>(row)].section)];
    isClosed = !isClosed;
    refresh();
}

// ---- what is listed

/// Where an application stands; nothing for one that is up to date. Asked of all applications: by what
/// is cheap to ask.
std::optional<UpdateRows::Section> UpdateRows::sectionOf(const QString& key) const {
    using Kind = AppUpdateActionState::Kind;
    const AppUpdateView update = _viewModel.updates().of(key);
    const auto status = update.status();
    if (const auto state = update.actionState()) {
        if (!state->isOver())
            return Section::available;
        if (state->kind == Kind::succeeded && !state->message.isEmpty() &&
            !(status && std::holds_alternative<UpdateAvailable>(*status)))
            return Section::updated;
    }
    if (status && std::holds_alternative<UpdateAvailable>(*status))
        return Section::available;
    if (update.skipped() == AppUpdateCache::everyVersion || update.isHeld())
        return Section::held;
    if (update.hasFailed())
        return Section::failed;
    if (!status || std::holds_alternative<UpdateUnsupported>(*status))
        return Section::unchecked;
    return std::nullopt;
}

/// What a button says where a menu has a sentence.
static QString buttonText(const AppUpdateView& update) {
    using enum AppUpdateActionKind;
    const auto kind = update.actionKind();
    const bool isItsOwn = kind == sparkle || kind == vendorUpdater || kind == openApp;
    return isItsOwn ? UpdateRows::tr("Open App") : update.actionLabel();
}

UpdateRows::Row UpdateRows::rowOf(const AppEntry& app, Section section) const {
    using Kind = AppUpdateActionState::Kind;
    const QString key = tessellar::appKey(app);
    const LauncherUpdates& updates = _viewModel.updates();
    const AppUpdateView update = updates.of(key);
    const auto record = update.record();
    const auto reason = update.reason();
    const auto state = update.actionState();
    Row row{.section = section, .appKey = key, .name = app.name};
    switch (section) {
    case Section::available:
        row.isRunning = state && !state->isOver();
        row.text = update.statusText();
        row.detail = record && record->notes ? record->notes->text : QString();
        row.action = row.isRunning ? tr("Cancel") : buttonText(update);
        row.canAct = row.isRunning || (!updates.isRunning() && update.actionKind());
        if (row.isRunning) {
            row.text = state->message.isEmpty() ? update.runningText() : state->message;
            row.detail = state->detail;
        } else if (state && !state->message.isEmpty() && state->kind != Kind::succeeded) {
            row.isFailure = state->kind == Kind::failed;
            row.text += QStringLiteral(" · ") + state->message;
            row.detail = state->detail;
        }
        break;
    case Section::updated:
        row.text = state ? state->message : QString();
        break;
    case Section::held:
        row.text = !update.isHeld() ? tr("Its updates are not offered.")
                   : record         ? update_texts::status(*record)
                                    : update_texts::held();
        break;
    case Section::failed:
    case Section::unchecked:
        row.isFailure = section == Section::failed;
        row.text = reason ? message(*reason) : tr("Not checked yet.");
        break;
    }
    if (const auto source = update.sourceText())
        row.source = source->label.isEmpty()
                         ? source->explanation
                         : source->label + QStringLiteral(". ") + source->explanation;
    return row;
}

std::vector<UpdateRows::Row> UpdateRows::rows() const {
    static constexpr std::array titles{QT_TR_NOOP("Updates"), QT_TR_NOOP("Updated"),
                                       QT_TR_NOOP("Held Back"), QT_TR_NOOP("Could Not Be Checked"),
                                       QT_TR_NOOP("Cannot Be Checked")};
    if (!_viewModel.updates().isReady())
        return {};
    std::array<std::vector<Row>, titles.size()> sections;
    std::array<int, titles.size()> counts{};
    for (const AppEntry& app : _viewModel.applications().all()) {
        const auto section = sectionOf(tessellar::appKey(app));
        if (!section)
            continue;
        const auto place = static_cast<std::size_t>(*section);
        ++counts[place];
        if (!_isClosed[place])
            sections[place].push_back(rowOf(app, *section));
    }
    std::vector<Row> result;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (counts[i] == 0)
            continue;
        result.push_back({.section = static_cast<Section>(i),
                          .name = tr(titles[i]),
                          .text = QString::number(counts[i]),
                          .isOpen = !_isClosed[i]});
        std::ranges::move(sections[i], std::back_inserter(result));
    }
    return result;
}

void UpdateRows::refresh() {
    std::vector<Row> wanted = rows();
    const auto find = [](std::vector<Row>& all, std::size_t from, const Row& row) {
        return std::find_if(all.begin() + static_cast<std::ptrdiff_t>(from), all.end(),
                            [&](const Row& other) { return other.isSame(row); });
    };
    // Long lists come and go as a whole, with their section.
    constexpr std::size_t many = 400;
    if (_rows.size() + wanted.size() > many) {
        if (_rows == wanted)
            return;
        beginResetModel();
        _rows = std::move(wanted);
        return endResetModel();
    }
    const auto remove = [this](int row) {
        beginRemoveRows({}, row, row);
        _rows.erase(_rows.begin() + row);
        endRemoveRows();
    };
    for (int i = rowCount() - 1; i >= 0; --i)
        if (find(wanted, 0, _rows[static_cast<std::size_t>(i)]) == wanted.end())
            remove(i);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const int at = static_cast<int>(i);
        if (const auto later = find(_rows, i, wanted[i]);
            later != _rows.end() && later != _rows.begin() + at) {
            const int from = static_cast<int>(later - _rows.begin());
            beginMoveRows({}, from, from, {}, at);
            std::rotate(_rows.begin() + at, later, later + 1);
            endMoveRows();
        }
        if (i >= _rows.size() || !_rows[i].isSame(wanted[i])) {
            beginInsertRows({}, at, at);
            _rows.insert(_rows.begin() + at, std::move(wanted[i]));
            endInsertRows();
        } else if (_rows[i] != wanted[i]) {
            _rows[i] = std::move(wanted[i]);
            Q_EMIT dataChanged(index(at), index(at));
        }
    }
}

} // namespace tessellar
