#include "app/information_panel.h"

#include "launcher/launcher_cleanup.h"
#include "launcher/launcher_messages.h"

namespace tessellar {

QString InformationPanel::appKey() const { return tessellar::appKey(_information.entry()); }

QString InformationPanel::version() const {
    const SmartFolderAppFacts& facts = _information.facts;
    if (!facts.version)
        return {};
    return facts.build && facts.build != facts.version
               ? tr("Version %1 (%2)").arg(*facts.version, *facts.build)
               : tr("Version %1").arg(*facts.version);
}

void InformationPanel::open(LauncherWindowMode mode, const AppEntry& app) {
    _gatherer = std::make_unique<AppInformationGatherer>(
        _viewModel, _machine, mode, app,
        [this](const AppInformation& information) { show(information); });
    show(_gatherer->information());
}

void InformationPanel::close() {
    _gatherer.reset();
    _information = {};
    _sections.clear();
}

void InformationPanel::reveal(const QString& path) {
    _viewModel.cleanup().reveal(
        path, [&messages = _viewModel.messages()](const auto& shown) { messages.report(shown); });
}

void InformationPanel::show(const AppInformation& information) {
    _information = information;
    QVariantList sections;
    for (const InformationSection& section : informationSections(_information, _machine.locale)) {
        QVariantList rows;
        for (const InformationRow& row : section.rows)
            rows.append(QVariantMap{{QStringLiteral("label"), row.label},
                                    {QStringLiteral("text"), row.text},
                                    {QStringLiteral("isKnown"), row.isKnown},
                                    {QStringLiteral("path"), row.path}});
        sections.append(
            QVariantMap{{QStringLiteral("title"), section.title}, {QStringLiteral("rows"), rows}});
    }
    _sections = std::move(sections);
    Q_EMIT changed();
}

} // namespace tessellar
