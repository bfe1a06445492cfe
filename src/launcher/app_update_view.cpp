#include "launcher/app_update_view.h"

#include "platform/texts.h"
#include "updates/app_update_coordinator.h"

namespace tessellar {

static const QString badgeOfUpdate = QStringLiteral("↓");

std::optional<AppUpdateStatus> AppUpdateView::status() const {
    if (!_coordinator)
        return std::nullopt;
    const auto& known = _coordinator->known().knownStatuses();
    const auto found = known.constFind(_appKey);
    return found == known.constEnd() ? std::nullopt : std::optional(*found);
}

bool AppUpdateView::hasFailed() const {
    if (!_coordinator)
        return false;
    const auto& statuses = _coordinator->known().statuses();
    const auto found = statuses.constFind(_appKey);
    return found != statuses.constEnd() && tessellar::hasFailed(*found);
}

std::optional<AppUpdateRecord> AppUpdateView::record() const {
    return _coordinator ? _coordinator->known().record(_appKey) : std::nullopt;
}

std::optional<AppUpdateReason> AppUpdateView::reason() const {
    return _coordinator ? _coordinator->known().reason(_appKey) : std::nullopt;
}

std::optional<AppUpdateChannel> AppUpdateView::channel() const {
    return _coordinator ? _coordinator->channels().channel(_appKey) : std::nullopt;
}

std::optional<AppUpdateSourceText> AppUpdateView::sourceText() const {
    const AppUpdateCandidate* installed =
        _coordinator ? _coordinator->channels().candidate(_appKey) : nullptr;
    return installed ? std::optional(
                           tessellar::sourceText(_coordinator->channels().channel(_appKey), *installed))
                     : std::nullopt;
}

QString AppUpdateView::badge() const {
    const auto known = status();
    return known && std::holds_alternative<UpdateAvailable>(*known) ? badgeOfUpdate : QString();
}

QString AppUpdateView::statusText() const {
    const auto known = status();
    const auto* update = known ? std::get_if<UpdateAvailable>(&*known) : nullptr;
    if (!update)
        return {};
    const AppUpdateCandidate* installed = _coordinator->channels().candidate(_appKey);
    return update_texts::available(installed ? installed->version : std::nullopt,
                                   update->latestVersion);
}

std::optional<AppUpdateActionKind> AppUpdateView::actionKind() const {
    const auto action = _coordinator ? _coordinator->channels().action(_appKey) : std::nullopt;
    return action ? std::optional(kindOf(*action)) : std::nullopt;
}

QString AppUpdateView::actionLabel() const {
    const auto kind = actionKind();
    return kind ? label(*kind) : QString();
}

std::optional<AppUpdateActionState> AppUpdateView::actionState() const {
    return _coordinator ? _coordinator->runner().state(_appKey) : std::nullopt;
}

QString AppUpdateView::runningText() const {
    using Kind = AppUpdateActionState::Kind;
    const auto state = actionState();
    if (!state || state->isOver())
        return {};
    return state->kind == Kind::waiting ? Texts::tr("Waiting for the updates before it…")
                                        : text(state->phase);
}

QString AppUpdateView::tileText() const {
    using Kind = AppUpdateActionState::Kind;
    const auto state = actionState();
    if (!state || state->isOver())
        return {};
    return state->kind == Kind::waiting ? Texts::tr("Waiting…") : shortText(state->phase);
}

bool AppUpdateView::isHeld() const {
    return _coordinator && _coordinator->known().tally().held > 0 &&
           _coordinator->known().isHeld(_appKey);
}

std::optional<QString> AppUpdateView::skipped() const {
    return _coordinator ? _coordinator->known().skipped(_appKey) : std::nullopt;
}

} // namespace tessellar
