// Commands for smart folders: facts, definitions, evaluations, recovery.

#include "control/command_set.h"
#include "control/named_file.h"
#include "launcher/installed_applications.h"
#include "launcher/launcher_editor.h"
#include "launcher/launcher_updates.h"
#include "launcher/smart_folder_library.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_raw_values.h"

namespace tessellar {
namespace {

void refuseUsage(const Call& call, const QString& message) {
    call->fail({QStringLiteral("wrongUsage"), message, {}}, ExitStatus::wrongUsage);
}

/// Reads a definition from a file, in the registry's format.
void readDefinition(const Call& call, const Word& name,
                    std::function<void(SmartFolderDefinition)> done) {
    readNamedFile(
        call, text(name), SmartFolderStore::maximumBytes,
        [call, done = std::move(done)](const QByteArray& bytes) {
            auto definition = json::decodeDocument<SmartFolderDefinition>(bytes);
            if (!definition)
                return call->fail({QStringLiteral("damaged"), json::message(definition.error()), {}});
            done(*std::move(definition));
        });
}

/// Finds a smart folder by identifier or name; null if several have that name.
const SmartFolderDefinition* definitionOf(const Call& call, const Word& word) {
    const SmartFolderLibrary& library = call->launcher().smartFolders();
    if (const auto id = json::decode<QUuid>(text(word)))
        if (const SmartFolderDefinition* found = library.definition(*id))
            return found;
    const SmartFolderDefinition* named = nullptr;
    int count = 0;
    for (const SmartFolderDefinition& definition : library.definitions()) {
        if (definition.name == text(word)) {
            named = &definition;
            ++count;
        }
    }
    if (count == 1)
        return named;
    const QString shown = text(word).left(200);
    if (const auto& failure = library.failure())
        call->fail(*failure);
    else if (count > 1)
        call->fail({QStringLiteral("ambiguousName"),
                    Texts::tr("%1 Smart Folders are called “%2”: name one by its identifier.")
                        .arg(count)
                        .arg(shown),
                    {}});
    else
        call->fail({QStringLiteral("noSuchSmartFolder"),
                    Texts::tr("There is no Smart Folder “%1”.").arg(shown),
                    {}});
    return nullptr;
}

/// Saves a definition through the editor, or fails with the editor's validation message.
void answerWithValidation(const Call& call, const SmartFolderDefinition& definition,
                          const std::function<LauncherEditor::Outcome()>& save) {
    if (const auto issues = validationIssues(definition); !issues.isEmpty())
        return call->fail({QStringLiteral("invalidDefinition"), message(issues.first()), {}});
    if (const auto outcome = save(); !outcome)
        return call->fail(outcome.error());
    const SmartFolderDefinition* saved = call->launcher().smartFolders().definition(definition.id);
    call->succeed(json::encode(saved ? *saved : definition), // with its date
                  QStringLiteral("%1  %2").arg(toText(definition.id), definition.name));
}

/// Gathers current facts, including what is known of updates. Homebrew is asked for its applications if
/// that matters and it has never been asked before.
void gatherFacts(const Call& call, SmartFolderNeeds needs, const std::function<void()>& done) {
    LauncherUpdates& updates = call->launcher().updates();
    const auto known = [call, needs, done] {
        call->launcher().smartFolders().gatherFacts(needs, done);
    };
    if (needs & SmartFolderNeed::channels)
        updates.whenChannelsKnown(known);
    else
        updates.whenReady(known);
}

void answerWithEvaluation(const Call& call, const SmartFolderDefinition& definition,
                          const Word& nowWord, const Word& localeWord) {
    Instant now = call->options.now.value_or(call->machine.clock.now());
    if (!nowWord->empty()) {
        const auto given = Instant::fromIso8601(text(nowWord));
        if (!given)
            return call->fail(
                {QStringLiteral("notADate"), Texts::tr("“%1” is not a date.").arg(text(nowWord)), {}});
        now = *given;
    }
    const QString localeName =
        localeWord->empty() ? call->options.locale.value_or(QString()) : text(localeWord);
    const Locale locale = localeName.isEmpty() ? call->machine.locale : Locale(localeName);
    const auto answer = [call, definition, locale, now] {
        const auto evaluation =
            call->launcher().smartFolders().evaluate(definition, call->mode(), locale, now);
        QStringList rules;
        for (const QUuid& id : evaluation.unknownRuleIDs)
            rules.append(toText(id));
        rules.sort();
        QString lines;
        for (const auto& facts : evaluation.matches)
            lines += facts->entry.name + u'\n';
        lines += call->launcher().smartFolders().notice(definition, evaluation);
        call->succeed(
            QJsonObject{{QStringLiteral("matches"), QJsonArray::fromStringList(evaluation.appKeys())},
                        {QStringLiteral("unknownRuleIDs"), QJsonArray::fromStringList(rules)}},
            lines);
    };
    gatherFacts(call, needsOf({definition}), answer);
}

QString factText(const QString& name, const QJsonValue& value) {
    return name.endsWith(Texts::tr("Date")) ? Instant{value.toDouble()}.toIso8601() : valueText(value);
}

QString factLines(const QJsonValue& facts) {
    QJsonObject record = facts.toObject();
    QString lines = record.take(u"entry").toObject().value(u"name").toString() + u'\n';
    for (auto it = record.begin(); it != record.end(); ++it)
        lines += QStringLiteral("    %1: %2\n").arg(it.key(), factText(it.key(), it.value()));
    return lines;
}

void answerWithFactsOf(const Call& call, const QString& key) {
    const AppEntry* app = call->launcher().applications().withKey(key);
    if (!app)
        return call->fail(InstalledApplications::unknown(key));
    call->launcher().updates().whenReady([call, entry = *app] {
        call->launcher().smartFolders().gatherFactsOf(
            entry, call->mode(), [call](const SmartFolderAppFacts& facts, bool isComplete) {
                if (!isComplete)
                    return;
                const QJsonValue record = json::encode(facts);
                call->succeed(record, factLines(record));
            });
    });
}

void addFacts(CommandSet& set) {
    CLI::App* facts = set.add("facts", Texts::noop("What is known of applications"));
    set.onRun(facts, CommandNeeds::launcher,
              [key = optionalWord(facts, "appkey", Texts::noop("One application; without it all"))](
                  const Call& call) {
                  if (!key->empty())
                      return answerWithFactsOf(call, text(key));
                  gatherFacts(call, allNeeds(), [call] {
                      QJsonArray all;
                      QString lines;
                      for (const auto& record : call->launcher().smartFolders().facts(call->mode())) {
                          all.append(json::encode(*record));
                          lines += factLines(all.last());
                      }
                      call->succeed(all, lines);
                  });
              });
}

void addDefinitions(CommandSet& set, CLI::App* group) {
    set.onRun(set.add("templates", Texts::noop("What a smart folder can be made from"), group),
              CommandNeeds::machine, [](const Call& call) {
                  QJsonArray names;
                  QString lines;
                  for (const auto& [value, raw] : json::RawValues<SmartFolderTemplate>::values) {
                      names.append(QLatin1StringView(raw));
                      lines +=
                          QStringLiteral("%1  %2\n").arg(QLatin1StringView(raw), templateName(value));
                  }
                  call->succeed(names, lines);
              });
    set.onRun(set.add("list", Texts::noop("All smart folders"), group), CommandNeeds::launcher,
              [](const Call& call) {
                  const SmartFolderLibrary& library = call->launcher().smartFolders();
                  if (const auto& failure = library.failure())
                      return call->fail(*failure);
                  QString lines;
                  for (const SmartFolderDefinition& definition : library.definitions())
                      lines += QStringLiteral("%1  %2\n").arg(toText(definition.id), definition.name);
                  call->succeed(json::encode(library.definitions()), lines);
              });
    CLI::App* show = set.add("show", Texts::noop("One smart folder's definition"), group);
    set.onRun(show, CommandNeeds::launcher,
              [id = word(show, "id", Texts::noop("Its identifier or name"))](const Call& call) {
                  if (const SmartFolderDefinition* definition = definitionOf(call, id))
                      call->succeed(json::encode(*definition),
                                    QString::fromUtf8(json::write(json::encode(*definition))));
              });

    CLI::App* add = set.add("add", Texts::noop("Make a smart folder from a template or a file"), group);
    set.onRun(
        add, CommandNeeds::launcher,
        [file = optionalWord(add, "file", Texts::noop("A definition in the form of the registry")),
         name = optionalWord(add, "--template", Texts::noop("The template's name"))](const Call& call) {
            if (name->empty() == file->empty())
                return refuseUsage(call, Texts::tr("Name a file, or a template with --template."));
            const auto place = [call](const SmartFolderDefinition& definition) {
                answerWithValidation(call, definition, [&] {
                    return call->launcher().editor().addSmartFolder(call->mode(), definition);
                });
            };
            if (name->empty())
                return readDefinition(call, file, [call, place](SmartFolderDefinition definition) {
                    place(withOwnIdentifiers(std::move(definition),
                                             call->launcher().smartFolders().definitions(),
                                             call->machine.uuids));
                });
            const auto which = json::fromRawValue<SmartFolderTemplate>(text(name));
            if (!which)
                return call->fail({QStringLiteral("noSuchTemplate"),
                                   Texts::tr("There is no template “%1”.").arg(text(name).left(80)),
                                   {}});
            Machine& machine = call->machine;
            place(templateDefinition(*which, machine.uuids.next(), machine.clock.now(), machine.uuids));
        });

    CLI::App* replace = set.add(
        "replace", Texts::noop("Replace a smart folder's definition with the one in a file"), group);
    set.onRun(replace, CommandNeeds::launcher,
              [id = word(replace, "id", Texts::noop("Its identifier or name")),
               file = word(replace, "file", Texts::noop("A definition in the form of the registry"))](
                  const Call& call) {
                  readDefinition(call, file, [call, id](SmartFolderDefinition definition) {
                      const SmartFolderDefinition* old = definitionOf(call, id);
                      if (!old)
                          return;
                      definition.id = old->id;
                      answerWithValidation(call, definition, [&] {
                          return call->launcher().editor().changeSmartFolder(call->mode(), definition);
                      });
                  });
              });

    CLI::App* remove =
        set.add("remove", Texts::noop("Delete a smart folder and its tiles in both modes"), group);
    set.onRun(remove, CommandNeeds::launcher,
              [id = word(remove, "id", Texts::noop("Its identifier or name"))](const Call& call) {
                  if (const SmartFolderDefinition* definition = definitionOf(call, id))
                      call->answer(
                          call->launcher().editor().deleteSmartFolder(call->mode(), definition->id));
              });

    CLI::App* place =
        set.add("place", Texts::noop("Give a smart folder a tile in the display mode"), group);
    set.onRun(place, CommandNeeds::launcher,
              [id = word(place, "id", Texts::noop("Its identifier or name"))](const Call& call) {
                  if (const SmartFolderDefinition* definition = definitionOf(call, id))
                      call->answer(
                          call->launcher().editor().addSmartFolderTile(call->mode(), definition->id));
              });
    CLI::App* unplace = set.add(
        "unplace",
        Texts::noop("Remove a smart folder's tile from the display mode, even if it has no definition"),
        group);
    set.onRun(unplace, CommandNeeds::launcher,
              [id = word(unplace, "id", Texts::noop("Its identifier, or its name"))](const Call& call) {
                  const auto given = json::decode<QUuid>(text(id));
                  const SmartFolderDefinition* definition = given ? nullptr : definitionOf(call, id);
                  if (given || definition)
                      call->answer(call->launcher().editor().removeSmartFolderTile(
                          call->mode(), given ? *given : definition->id));
              });

    CLI::App* recover =
        set.add("recover", Texts::noop("Recover from a registry that could not be read"), group);
    set.onRun(
        recover, CommandNeeds::launcher,
        [how =
             word(recover, "how",
                  Texts::noop("restore: put it back and try again; replace: start with an empty one"))](
            const Call& call) {
            if (text(how) != u"restore" && text(how) != u"replace")
                return refuseUsage(call, Texts::tr("recover takes restore or replace."));
            call->answer(call->launcher().smartFolders().recover(
                text(how) == u"restore" ? SmartFolderRecovery::restore : SmartFolderRecovery::replace));
        });
}

void addEvaluate(CommandSet& set, CLI::App* group) {
    CLI::App* evaluate = set.add("evaluate", Texts::noop("What a smart folder shows, in order"), group);
    set.onRun(
        evaluate, CommandNeeds::launcher,
        [id = optionalWord(evaluate, "id", Texts::noop("Its identifier or name")),
         file =
             optionalWord(evaluate, "--definition", Texts::noop("Use a definition in a file instead")),
         now = optionalWord(evaluate, "--now", Texts::noop("The time, such as 2026-11-14T21:05:40Z")),
         locale = optionalWord(evaluate, "--locale", Texts::noop("The locale for texts and weeks"))](
            const Call& call) {
            if (id->empty() == file->empty())
                return refuseUsage(call,
                                   Texts::tr("Name a Smart Folder, or a file with --definition."));
            if (!file->empty()) {
                readDefinition(call, file, [=](const SmartFolderDefinition& definition) {
                    answerWithEvaluation(call, definition, now, locale);
                });
            } else if (const SmartFolderDefinition* definition = definitionOf(call, id)) {
                answerWithEvaluation(call, *definition, now, locale);
            }
        });
}

} // namespace

void addSmartFolderCommands(CommandSet& set) {
    addFacts(set);
    CLI::App* group =
        set.addGroup("smart-folders", Texts::noop("Folders whose contents are determined by rules"));
    addDefinitions(set, group);
    addEvaluate(set, group);
}

} // namespace tessellar
