#include "app/arrangements_panel.h"

#include "app/icon_requests.h"
#include "app/image_item.h"
#include "launcher/counts_text.h"
#include "launcher/date_text.h"
#include "launcher/launcher_messages.h"
#include "launcher/layout_archive.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"
#include "platform/uuid_source.h"

#include <algorithm>

namespace tessellar {

static const QString fileExtension = QStringLiteral(".tessellar-arrangement");

/// The suggested file name for an arrangement, truncated to what file systems accept.
static QString fileName(QString name) {
    constexpr qsizetype mostBytes = 200;
    while (name.toUtf8().size() > mostBytes)
        name.chop(name.back().isLowSurrogate() ? 2 : 1);
    return name.replace(u'/', u'-');
}

ArrangementsPanel::ArrangementsPanel(LauncherViewModel& viewModel, const Machine& machine)
    : _viewModel(viewModel), _machine(machine) {
    connect(&_menu, &MenuModel::chosen, this, &ArrangementsPanel::choose);
}

// ---- the list

QString ArrangementsPanel::summary() const {
    if (!_rows.isEmpty())
        return {};
    return _isLoading ? tr("Looking for arrangements…") : tr("There are no saved arrangements yet.");
}

QString ArrangementsPanel::modeText() const {
    return tr("Arrangements belong to the current display mode (%1).")
        .arg(_viewModel.shown().mode() == LauncherWindowMode::fullScreen ? tr("Full Screen")
                                                                         : tr("Window"));
}

QString ArrangementsPanel::undoText() const {
    const QString name = saved().undoName(_viewModel.shown().mode());
    return name.isEmpty() ? QString() : tr("Undo %1").arg(name);
}

void ArrangementsPanel::open() {
    begin(QStringLiteral("save"));
    _rows.clear();
    _isLoading = true;
    refresh();
    Q_EMIT changed();
}

void ArrangementsPanel::refresh() {
    saved().list(_viewModel.shown().mode(),
                 _lifetime.guard([this](const QList<ListedArrangement>& all) { show(all); }));
}

void ArrangementsPanel::show(const QList<ListedArrangement>& all) {
    _isLoading = false;
    _all = all;
    _rows.clear();
    for (const ListedArrangement& arrangement : all) {
        const ArrangementSummary& summary = arrangement.summary;
        const QStringList text{dateText(summary.createdAt, _machine.locale),
                               countsText(summary.appCount, summary.folderCount, summary.pageCount)};
        const GridGeometry shown = pageGeometry(_viewModel.shown().settings());
        _rows.append(QVariantMap{
            {QStringLiteral("id"), toText(summary.id)},
            {QStringLiteral("title"), arrangement.isReadable ? summary.name : tr("Cannot be read")},
            {QStringLiteral("text"), arrangement.isReadable ? text.join(QStringLiteral(" · "))
                                                            : toText(summary.id) + u".json"_qs},
            {QStringLiteral("isReadable"), arrangement.isReadable},
            {QStringLiteral("rows"), arrangement.rows > 0 ? arrangement.rows : shown.rows},
            {QStringLiteral("columns"), arrangement.columns > 0 ? arrangement.columns : shown.columns},
            {QStringLiteral("tiles"), pictureTiles(arrangement.firstPage, _viewModel.smartFolders())}});
    }
    Q_EMIT changed();
}

QList<IconRequest> ArrangementsPanel::icons() const {
    QList<IconRequest> icons;
    for (const ListedArrangement& arrangement : _all)
        icons += pageIcons(arrangement.firstPage);
    return icons;
}

QString ArrangementsPanel::nameOf(const QUuid& id) const {
    const auto found = std::ranges::find(
        _all, id, [](const ListedArrangement& arrangement) { return arrangement.summary.id; });
    return found == _all.end() ? QString() : found->summary.name;
}

// ---- actions

void ArrangementsPanel::ask(const QString& title, const QString& text, const QString& accept,
                            bool isDestructive, std::function<void()> work) {
    setIssue({});
    _viewModel.messages().ask(
        {.title = title, .text = text, .accept = accept, .isDestructive = isDestructive},
        _lifetime.guard([work = std::move(work)](bool accepted) {
            if (accepted)
                work();
        }));
}

void ArrangementsPanel::restore(const QString& text) {
    const QUuid id = QUuid::fromString(text);
    ask(tr("Restore “%1”?").arg(nameOf(id)),
        tr("The current arrangement will be backed up first. Apps that are no longer installed will be "
           "removed, and newly installed apps will be placed on new pages at the end."),
        tr("Restore"), false, [&viewModel = _viewModel, mode = _viewModel.shown().mode(), id] {
            viewModel.archive().restore(
                mode, id, [&messages = viewModel.messages()](const LayoutArchive::Restored& restored) {
                    if (!restored)
                        messages.report(restored.error());
                });
        });
}

void ArrangementsPanel::openMenu(const QString& id, QPointF point) {
    _subject = QUuid::fromString(id);
    const auto found = std::ranges::find(
        _all, _subject, [](const ListedArrangement& arrangement) { return arrangement.summary.id; });
    QList<MenuEntry> entries{
        {.id = QStringLiteral("rename"), .title = tr("Rename…")},
        {.id = QStringLiteral("replace"), .title = tr("Replace with the Current One…")},
        {.id = QStringLiteral("export"), .title = tr("Export…")},
        {},
        {.id = QStringLiteral("delete"), .title = tr("Delete…"), .isDestructive = true}};
    if (found != _all.end() && !found->isReadable)
        entries = {entries.last()};
    _menu.open(entries, point, 0);
}

void ArrangementsPanel::choose(const QString& entry) {
    const auto mode = _viewModel.shown().mode();
    const QString name = nameOf(_subject);
    if (entry == u"replace")
        ask(tr("Replace “%1”?").arg(name),
            tr("The current arrangement is saved under this name. The current launcher layout will not "
               "change."),
            tr("Replace"), true,
            [this, mode, id = _subject] { saved().replace(mode, id, reporting()); });
    else if (entry == u"delete")
        ask(tr("Delete “%1”?").arg(name),
            tr("This saved arrangement will be removed. The current launcher layout will not change."),
            tr("Delete"), true, [this, mode, id = _subject] { saved().remove(mode, id, reporting()); });
    else
        begin(entry, _subject);
}

void ArrangementsPanel::undo() {
    const auto mode = _viewModel.shown().mode();
    if (!saved().undoName(mode).isEmpty())
        saved().undo(mode, reporting());
}

void ArrangementsPanel::redo() {
    const auto mode = _viewModel.shown().mode();
    if (!saved().redoName(mode).isEmpty())
        saved().redo(mode, reporting());
}

// ---- the field

void ArrangementsPanel::begin(const QString& task, const QUuid& id) {
    _task = task;
    _subject = id;
    setIssue({});
    Q_EMIT taskChanged();
}

bool ArrangementsPanel::endTask() {
    if (_task == u"save")
        return false;
    begin(QStringLiteral("save"));
    return true;
}

QString ArrangementsPanel::prompt() const {
    if (_task == u"rename")
        return tr("New name of “%1”").arg(nameOf(_subject));
    if (_task == u"export")
        return tr("Where “%1” is copied to").arg(nameOf(_subject));
    if (_task == u"import")
        return tr("Path of a file that was exported; it can be dropped here, too");
    return tr("Name this arrangement so it can be restored later.");
}

QString ArrangementsPanel::suggestion() const {
    if (_task == u"rename")
        return nameOf(_subject);
    if (_task == u"export")
        return QStringLiteral("~/") + fileName(nameOf(_subject)) + fileExtension;
    return {};
}

QString ArrangementsPanel::accept() const {
    return _task == u"rename"   ? tr("Rename")
           : _task == u"export" ? tr("Export")
           : _task == u"import" ? tr("Import")
                                : tr("Save");
}

/// A path on the host, or relative to the user's home.
std::optional<ArrangementsPanel::File> ArrangementsPanel::file(const QString& text) const {
    static const FileSystem host;
    if (text.startsWith(u"~/"))
        return File{&_machine.files, FileSystem::joined(_machine.places.home, text.sliced(2))};
    return text.startsWith(u'/') ? std::optional(File{&host, text}) : std::nullopt;
}

void ArrangementsPanel::finish(const QString& text) {
    const auto mode = _viewModel.shown().mode();
    if (_task == u"save")
        return saved().save(mode, text, reporting(_task));
    if (_task == u"rename")
        return saved().rename(mode, _subject, text, reporting(_task));
    const auto named = file(text.trimmed());
    if (!named)
        return setIssue(tr("Give the whole path, beginning with “/” or “~/”."));
    if (_task == u"export")
        saved().exportTo(mode, _subject, *named->files, named->path, reporting(_task));
    else
        saved().importFrom(mode, *named->files, named->path, reporting(_task));
}

/// Errors are shown in the sheet, which keeps what was typed until the field's own task is done.
LauncherArrangements::Done ArrangementsPanel::reporting(const QString& task) {
    return _lifetime.guard([this, task](const LauncherArrangements::Saved& saved) {
        if (!saved)
            return setIssue(saved.error().message);
        if (task == u"export")
            _viewModel.messages().showNotice(tr("Exported “%1”.").arg(saved->name));
        const bool isSubjectGone = !_subject.isNull() && nameOf(_subject).isEmpty();
        if (task == _task || isSubjectGone)
            begin(QStringLiteral("save"));
        else
            setIssue({});
    });
}

void ArrangementsPanel::setIssue(const QString& issue) {
    if (std::exchange(_issue, issue) != issue)
        Q_EMIT issueChanged();
}

} // namespace tessellar
