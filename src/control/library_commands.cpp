// Commands for what comes from outside: the old Launchpad's arrangement, custom icons, changes to the
// installed applications.

#include "control/command_set.h"
#include "control/named_file.h"
#include "launcher/launcher_icons.h"
#include "launcher/launcher_import.h"
#include "launcher/library_watch.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

// ---- import

void writeNames(QString& text, const Page& page, int indent) {
    for (const LaunchpadItem& item : page) {
        const FolderEntry* folder = item.folder();
        text += QString(indent, u' ') + (folder ? folder->name + u'/' : item.app()->name) + u'\n';
        if (folder)
            for (const Page& inner : folder->pages)
                writeNames(text, inner, indent + 4);
    }
}

void answerWithPreview(const Call& call, const NativeLaunchpadImportResult& found) {
    QString text;
    for (qsizetype page = 0; page < found.pages.size(); ++page) {
        text += Texts::tr("Page %1\n").arg(page + 1);
        writeNames(text, found.pages.at(page), 2);
        text += u'\n';
    }
    text += LaunchpadImportTexts::report(found.metadata) + u'\n';
    for (const QString& name : found.skippedApps)
        text += QStringLiteral("  %1\n").arg(name);
    QJsonObject object = json::encode(found.metadata).toObject();
    object.insert(QStringLiteral("pages"), json::encode(found.pages));
    object.insert(QStringLiteral("skippedApps"), json::encode(found.skippedApps));
    call->succeed(object, text);
}

void addImport(CommandSet& set) {
    CLI::App* import =
        set.add("import-launchpad", Texts::noop("Import the old Launchpad's arrangement"));
    const Word database =
        optionalWord(import, "--database", Texts::noop("Its database, if not the system's"));
    const Flag isPreview = flag(import, "--preview", Texts::noop("Only print what would be imported"));
    set.onRun(import, CommandNeeds::launcher, [database, isPreview](const Call& call) {
        std::optional<LauncherImport::Database> file;
        if (!database->empty()) {
            const NamedFile named = namedFile(*call, text(database));
            file = {named.path, named.files};
        }
        LauncherImport& importer = call->launcher().launchpadImport();
        if (*isPreview)
            return importer.preview(call->mode(), file, [call](const auto& found) {
                if (found)
                    answerWithPreview(call, *found);
                else
                    call->fail(found.error());
            });
        importer.run(call->mode(), file, [call](const auto& metadata) {
            if (metadata)
                call->succeed(json::encode(*metadata), LaunchpadImportTexts::doneTitle() + u'\n' +
                                                           LaunchpadImportTexts::report(*metadata));
            else
                call->fail(metadata.error());
        });
    });
}

// ---- icons

QJsonObject iconObject(const LauncherIcons& icons, const QString& appKey) {
    return {{QStringLiteral("appKey"), appKey},
            {QStringLiteral("path"), icons.path(appKey).value_or(QString())}};
}

void addIcons(CommandSet& set) {
    CLI::App* group = set.addGroup("icon", Texts::noop("Custom icons for applications"));
    CLI::App* put = set.add("set", Texts::noop("Give an application the icon in an .icns file"), group);
    set.onRun(put, CommandNeeds::launcher,
              [key = word(put, "appkey", appKeyHelp),
               file = word(put, "file", Texts::noop("An .icns file, of which a copy is kept"))](
                  const Call& call) {
                  const NamedFile named = namedFile(*call, text(file));
                  call->launcher().icons().set(
                      text(key), named.path,
                      [call](const LauncherIcons::Outcome& outcome) { call->answer(outcome); },
                      named.files);
              });

    CLI::App* show =
        set.add("show", Texts::noop("Where the copy of an application's own icon lies"), group);
    set.onRun(show, CommandNeeds::launcher, [key = word(show, "appkey", appKeyHelp)](const Call& call) {
        const LauncherIcons& icons = call->launcher().icons();
        if (const auto path = icons.path(text(key)))
            return call->succeed(iconObject(icons, text(key)), *path);
        call->fail({QStringLiteral("noCustomIcon"),
                    Texts::tr("“%1” has no custom icon.").arg(text(key).left(200)),
                    {}});
    });

    CLI::App* remove = set.add("remove", Texts::noop("Back to the application's own icon"), group);
    set.onRun(
        remove, CommandNeeds::launcher, [key = word(remove, "appkey", appKeyHelp)](const Call& call) {
            call->launcher().icons().remove(
                text(key), [call](const LauncherIcons::Outcome& outcome) { call->answer(outcome); });
        });

    set.onRun(set.add("list", Texts::noop("The applications that have a custom icon"), group),
              CommandNeeds::launcher, [](const Call& call) {
                  const LauncherIcons& icons = call->launcher().icons();
                  QJsonArray array;
                  QString text;
                  for (const QString& key : icons.appKeys()) {
                      array.append(iconObject(icons, key));
                      text += key + u'\n';
                  }
                  call->succeed(array,
                                text.isEmpty() ? Texts::tr("No application has a custom icon.") : text);
              });
}

// ---- watching

QString noticeText(const LibraryNotice& notice) {
    using Kind = LibraryNotice::Kind;
    if (notice.kind == Kind::watching)
        return Texts::tr("Watching %n folders.", nullptr, static_cast<int>(notice.paths.size()));
    if (notice.kind == Kind::polling)
        return Texts::tr("The system's limit on watched folders was reached: some folders are checked "
                         "every ten seconds instead.");
    QString text;
    for (const QString& path : notice.paths)
        text += QStringLiteral("%1  %2\n").arg(json::rawValue(notice.kind), path);
    return text;
}

void addWatch(CommandSet& set) {
    set.onRun(set.add("watch", Texts::noop("Print changes to the applications until stopped")),
              CommandNeeds::launcherReadOnly, [](const Call& call) {
                  call->options.oneLine = true;
                  LibraryWatch& watch = call->launcher().libraryWatch();
                  const auto say = [call](const LibraryNotice& notice) {
                      call->print(json::encode(notice), noticeText(notice));
                  };
                  call->whenCancelled([call] { call->finish(ExitStatus::done); });
                  call->held.push_back(std::make_shared<Subscription>(watch.noticed.connect(say)));
                  // A running launcher is already watching.
                  if (!watch.watchedDirectories().isEmpty())
                      say({LibraryNotice::Kind::watching, watch.watchedDirectories()});
                  watch.start();
              });
}

} // namespace

void addLibraryCommands(CommandSet& set) {
    addImport(set);
    addIcons(set);
    addWatch(set);
}

} // namespace tessellar
