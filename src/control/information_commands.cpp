// All that is known about one application.

#include "control/command_set.h"
#include "launcher/app_information_gatherer.h"
#include "launcher/installed_applications.h"
#include "platform/texts.h"

namespace tessellar {
namespace {

/// A section's title and its rows, with the texts aligned.
QString sectionText(const InformationSection& section) {
    qsizetype widest = 0;
    for (const InformationRow& row : section.rows)
        widest = std::max(widest, row.label.size());
    QString text = section.title + u'\n';
    for (const InformationRow& row : section.rows) {
        QString label = row.label.isEmpty() ? QString() : row.label + u':';
        for (const QString& line : row.text.split(u'\n'))
            text += QStringLiteral("  %1  %2\n")
                        .arg(std::exchange(label, QString()), -(widest + 1))
                        .arg(line);
    }
    return text;
}

void answer(const Call& call, const AppInformation& information) {
    QStringList sections;
    for (const InformationSection& section : informationSections(information, call->machine.locale))
        sections.append(sectionText(section));
    call->succeed(json::encode(information), sections.join(u'\n'));
}

} // namespace

void addInformationCommands(CommandSet& set) {
    CLI::App* info = set.add("info", Texts::noop("All that is known of an application"));
    set.onRun(info, CommandNeeds::launcher, [key = word(info, "appkey", appKeyHelp)](const Call& call) {
        const auto app = AppInformationGatherer::application(call->launcher(), call->mode(), text(key));
        if (!app)
            return call->fail(InstalledApplications::unknown(text(key)));
        call->held.push_back(
            std::make_shared<AppInformationGatherer>(call->launcher(), call->machine, call->mode(),
                                                     *app, [call](const AppInformation& information) {
                                                         if (!information.pending.any())
                                                             answer(call, information);
                                                     }));
    });
}

} // namespace tessellar
