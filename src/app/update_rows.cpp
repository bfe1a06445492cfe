#include "app/update_rows.h"

#include "launcher/installed_applications.h"
#include "launcher/launcher_updates.h"

#include <algorithm>
#include <tuple>

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
        return words(row).name;
    case TextRole:
        return words(row).text;
    case DetailRole:
        return words(row).detail;
    case SourceRole:
        return words(row).source;
    case ActionRole:
        return words(row).action;
    case CanActRole:
        return words(row).canAct;
    case RunningRole:
        return words(row).isRunning;
    case FailureRole:
        return words(row).isFailure;
    case OpenRole:
        return words(row).isOpen;
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

// ---- the list

/// An application's section; nullopt if it is up to date. Must be cheap: called for all applications.
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

/// A short label for a button; menus use a sentence.
static QString buttonText(const AppUpdateView& update) {
    using enum AppUpdateActionKind;
    const auto kind = update.actionKind();
    const bool isItsOwn = kind == sparkle || kind == vendorUpdater || kind == openApp;
    return isItsOwn ? UpdateRows::tr("Open App") : update.actionLabel();
}

const UpdateRows::Words& UpdateRows::words(const Row& row) const {
    if (!row.words)
        row.words = wordsNow(row);
    return *row.words;
}

UpdateRows::Words UpdateRows::wordsNow(const Row& row) const {
    static constexpr std::array titles{QT_TR_NOOP("Updates"), QT_TR_NOOP("Updated"),
                                       QT_TR_NOOP("Held Back"), QT_TR_NOOP("Could Not Be Checked"),
                                       QT_TR_NOOP("Cannot Be Checked")};
    static_assert(titles.size() == std::tuple_size_v<decltype(_counts)>);
    if (!row.appKey.isEmpty()) {
        const AppEntry* app = _viewModel.applications().withKey(row.appKey);
        return app ? wordsOf(*app, row.section) : Words();
    }
    const auto place = static_cast<std::size_t>(row.section);
    return {.name = tr(titles[place]),
            .text = QString::number(_counts[place]),
            .isOpen = !_isClosed[place]};
}

UpdateRows::Words UpdateRows::wordsOf(const AppEntry& app, Section section) const {
    using Kind = AppUpdateActionState::Kind;
    const QString key = tessellar::appKey(app);
    const LauncherUpdates& updates = _viewModel.updates();
    const AppUpdateView update = updates.of(key);
    const auto record = update.record();
    const auto reason = update.reason();
    const auto state = update.actionState();
    Words row{.name = app.name};
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

std::vector<UpdateRows::Row> UpdateRows::rows() {
    _counts = {};
    if (!_viewModel.updates().isReady())
        return {};
    std::array<std::vector<Row>, std::tuple_size_v<decltype(_counts)>> sections;
    for (const AppEntry& app : _viewModel.applications().all()) {
        const QString key = tessellar::appKey(app);
        const auto section = sectionOf(key);
        if (!section)
            continue;
        const auto place = static_cast<std::size_t>(*section);
        ++_counts[place];
        if (!_isClosed[place])
            sections[place].push_back({.section = *section, .appKey = key});
    }
    std::vector<Row> result;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (_counts[i] == 0)
            continue;
        result.push_back({.section = static_cast<Section>(i), .appKey = {}});
        std::ranges::move(sections[i], std::back_inserter(result));
    }
    return result;
}

void UpdateRows::refresh() {
    const std::vector<Row> wanted = rows();
    constexpr std::size_t many = 400;
    if (_rows.size() + wanted.size() > many)
        replaceMiddle(wanted);
    else
        followRowByRow(wanted);
    for (std::size_t i = 0; i < wanted.size(); ++i)
        _rows[i].section = wanted[i].section;
    refreshWords();
}

void UpdateRows::remove(std::size_t first, std::size_t end) {
    if (first == end)
        return;
    beginRemoveRows({}, static_cast<int>(first), static_cast<int>(end) - 1);
    _rows.erase(_rows.begin() + static_cast<std::ptrdiff_t>(first),
                _rows.begin() + static_cast<std::ptrdiff_t>(end));
    endRemoveRows();
}

void UpdateRows::insert(std::size_t at, std::span<const Row> rows) {
    if (rows.empty())
        return;
    beginInsertRows({}, static_cast<int>(at), static_cast<int>(at + rows.size()) - 1);
    _rows.insert(_rows.begin() + static_cast<std::ptrdiff_t>(at), rows.begin(), rows.end());
    endInsertRows();
}

/// Replaces everything between the common beginning and end of a long list at once.
void UpdateRows::replaceMiddle(std::span<const Row> wanted) {
    const std::size_t shorter = std::min(_rows.size(), wanted.size());
    std::size_t before = 0;
    while (before < shorter && _rows[before].isSame(wanted[before]))
        ++before;
    std::size_t after = 0;
    while (after < shorter - before &&
           _rows[_rows.size() - 1 - after].isSame(wanted[wanted.size() - 1 - after]))
        ++after;
    remove(before, _rows.size() - after);
    insert(before, wanted.subspan(before, wanted.size() - after - before));
}

void UpdateRows::followRowByRow(std::span<const Row> wanted) {
    const auto isIn = [](std::span<const Row> all, const Row& row) {
        return std::ranges::any_of(all, [&](const Row& other) { return other.isSame(row); });
    };
    for (std::size_t i = _rows.size(); i-- > 0;)
        if (!isIn(wanted, _rows[i]))
            remove(i, i + 1);
    for (std::size_t i = 0; i < wanted.size(); ++i) {
        const auto at = _rows.begin() + static_cast<std::ptrdiff_t>(i);
        const auto found =
            std::find_if(at, _rows.end(), [&](const Row& row) { return row.isSame(wanted[i]); });
        if (found == _rows.end()) {
            insert(i, wanted.subspan(i, 1));
        } else if (found != at) {
            const int from = static_cast<int>(found - _rows.begin());
            beginMoveRows({}, from, from, {}, static_cast<int>(i));
            std::rotate(at, found, found + 1);
            endMoveRows();
        }
    }
}

/// Updates the texts of the rows whose texts have been requested.
void UpdateRows::refreshWords() {
    for (std::size_t i = 0; i < _rows.size(); ++i) {
        const Row& row = _rows[i];
        if (!row.words)
            continue;
        Words now = wordsNow(row);
        if (std::exchange(row.words, now) != now)
            Q_EMIT dataChanged(index(static_cast<int>(i)), index(static_cast<int>(i)));
    }
}

} // namespace tessellar
