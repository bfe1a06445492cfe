#include "app/arranging_panel.h"

#include "app/icon_requests.h"
#include "launcher/launcher_messages.h"
#include "launcher/live_layout.h"
#include "launcher/smart_folder_library.h"

#include <algorithm>

namespace tessellar {

void ArrangingPanel::open(bool isFirstRun) {
    _isFirstRun = isFirstRun;
    _mode = _viewModel.shown().mode();
    _all = {};
    _chosen = _page = 0;
    Q_EMIT changed();
    const int opening = ++_openings;
    _viewModel.proposals().propose(_mode, _lifetime.guard([=, this](const LayoutProposals::All& all) {
        if (opening != _openings)
            return;
        _all = all;
        Q_EMIT changed();
    }));
}

const LayoutProposal* ArrangingPanel::chosen() const {
    return _chosen < _all.proposals.size() ? &_all.proposals.at(_chosen) : nullptr;
}

QVariantList ArrangingPanel::choices() const {
    QVariantList choices;
    for (const LayoutProposal& proposal : _all.proposals)
        choices.append(QVariantMap{{QStringLiteral("title"), title(proposal.kind)},
                                   {QStringLiteral("isChosen"), &proposal == chosen()}});
    return choices;
}

QString ArrangingPanel::explanation() const {
    return chosen() ? tessellar::explanation(*chosen()) : QString();
}

QString ArrangingPanel::issue() const {
    return _all.importFailure ? _all.importFailure->message : QString();
}

int ArrangingPanel::pageCount() const {
    return chosen() ? static_cast<int>(chosen()->pages.size()) : 0;
}

QString ArrangingPanel::pageText() const {
    return pageCount() > 0 ? tr("Page %1 of %2").arg(_page + 1).arg(pageCount()) : QString();
}

/// Without hidden applications.
Page ArrangingPanel::shownPage() const {
    Page page = _page < pageCount() ? chosen()->pages.at(_page) : Page();
    page.removeIf([&hidden = _viewModel.layout(_mode).hiddenKeys()](const LaunchpadItem& item) {
        return item.app() && hidden.contains(appKey(*item.app()));
    });
    return page;
}

QList<IconRequest> ArrangingPanel::icons() const { return pageIcons(shownPage()); }

QVariantMap ArrangingPanel::picture() const {
    const GridGeometry geometry = pageGeometry(_viewModel.layout(_mode).settings());
    return {{QStringLiteral("rows"), geometry.rows},
            {QStringLiteral("columns"), geometry.columns},
            {QStringLiteral("tiles"), pictureTiles(shownPage(), _viewModel.smartFolders())}};
}

void ArrangingPanel::choose(int index) {
    _chosen = std::clamp(index, 0, std::max(0, static_cast<int>(_all.proposals.size()) - 1));
    _page = 0;
    Q_EMIT changed();
}

void ArrangingPanel::turn(int by) {
    _page = std::clamp(_page + by, 0, std::max(0, pageCount() - 1));
    Q_EMIT changed();
}

void ArrangingPanel::take() {
    // On the first run the other mode has nothing to lose either.
    const auto modes =
        _isFirstRun ? QList(LiveLayouts::modes.begin(), LiveLayouts::modes.end()) : QList{_mode};
    if (const LayoutProposal* proposal = chosen())
        _viewModel.proposals().take(
            modes, *proposal,
            [&messages = _viewModel.messages()](const auto& outcome) { messages.report(outcome); });
}

} // namespace tessellar
