#include "updates/app_update_reason.h"

#include "platform/texts.h"

namespace tessellar {

namespace {

struct Row {
    AppUpdateReason::Code code;
    const char* text;
    bool isTransient = false;
};

using enum AppUpdateReason::Code;
constexpr Row rows[] = {
    {unreachable, Texts::noop("The server could not be reached."), true},
    {timedOut, Texts::noop("The server did not answer in time."), true},
    {throttled, Texts::noop("The server accepts no more requests for now."), true},
    {refused, Texts::noop("The server answered with an error."), true},
    {redirected, Texts::noop("The server redirects to an address that is not allowed.")},
    {tooLarge, Texts::noop("The server’s answer is too large.")},
    {notUnderstood, Texts::noop("The server’s answer could not be understood.")},
    {notListed, Texts::noop("The App Store does not list this app.")},
    {otherApplication, Texts::noop("The App Store lists another app under this app’s number.")},
    {noSpotlight, Texts::noop("Spotlight did not answer."), true},
    {brewFailed, Texts::noop("Homebrew reported an error."), true},
    {brewTimedOut, Texts::noop("Homebrew did not answer in time."), true},
    {brewNotUnderstood, Texts::noop("Homebrew’s answer could not be understood."), true},
    {noSecureAddress, Texts::noop("The app’s update feed is not at a secure address.")},
    {noFeed, Texts::noop("The app updates itself and names no feed.")},
    {noInstalledVersion, Texts::noop("The app does not say which version it is.")},
    {sharedListing, Texts::noop("The App Store’s listing is shared with other devices.")},
    {noMacListing, Texts::noop("The App Store’s listing is not for Macs.")},
    {updatesItself,
     Texts::noop("This cask’s app updates itself, so Homebrew cannot tell its version. Open the app "
                 "to check for updates.")},
    {alwaysLatest, Texts::noop("This cask has no version numbers.")},
    {noStoreItem, Texts::noop("Spotlight does not know the app’s number in the App Store.")},
    {noChannel, Texts::noop("The app declares no source of updates that can be checked.")},
    {pinned, Texts::noop("This cask is pinned in Homebrew.")},
};

const Row& rowOf(AppUpdateReason::Code code) { return rows[static_cast<std::size_t>(code)]; }

static_assert([] {
    std::size_t i = 0;
    for (const Row& row : rows)
        if (static_cast<std::size_t>(row.code) != i++)
            return false;
    return i == static_cast<std::size_t>(pinned) + 1;
}());

} // namespace

QString message(const AppUpdateReason& reason) {
    const QString text = Texts::tr(rowOf(reason.code).text);
    if (reason.detail.isEmpty())
        return text;
    const bool isEnded = QStringView(u".!?…").contains(reason.detail.back());
    return text + u' ' + reason.detail + (isEnded ? QString() : QStringLiteral("."));
}

bool isTransient(const AppUpdateReason& reason) { return rowOf(reason.code).isTransient; }

} // namespace tessellar
