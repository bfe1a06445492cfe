#include "updates/app_update_reason.h"

namespace tessellar {

namespace {

struct Row {
    AppUpdateReason::Code code;
    const char16_t* text;
    bool isPassing = false;
};

using enum AppUpdateReason::Code;
constexpr Row rows[] = {
    {unreachable, u"The server could not be reached.", true},
    {timedOut, u"The server did not answer in time.", true},
    {throttled, u"The server takes no more questions for now.", true},
    {refused, u"The server answered with an error.", true},
    {redirected, u"The server leads to an address that is not followed."},
    {tooLarge, u"The server’s answer is too large."},
    {notUnderstood, u"The server’s answer could not be understood."},
    {notListed, u"The App Store does not list this app."},
    {otherApplication, u"The App Store lists another app under this app’s number."},
    {noSpotlight, u"Spotlight did not answer.", true},
    {brewFailed, u"Homebrew reported an error.", true},
    {brewTimedOut, u"Homebrew did not answer in time.", true},
    {brewNotUnderstood, u"Homebrew’s answer could not be understood.", true},
    {noSecureAddress, u"The app’s update feed is not at a secure address."},
    {noFeed, u"The app updates itself and names no feed."},
    {noInstalledVersion, u"The app does not say which version it is."},
    {sharedListing, u"The App Store’s listing is shared with other devices."},
    {noMacListing, u"The App Store’s listing is not for Macs."},
    {updatesItself,
     u"This cask’s app updates itself, so Homebrew cannot tell its version. Open the app "
     u"to check for updates."},
    {alwaysLatest, u"This cask has no version numbers."},
    {noStoreItem, u"Spotlight does not know the app’s number in the App Store."},
    {noChannel, u"The app declares no source of updates that can be checked."},
    {pinned, u"This cask is pinned in Homebrew."},
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
    const QString text = QString::fromUtf16(rowOf(reason.code).text);
    if (reason.detail.isEmpty())
        return text;
    const bool isEnded = QStringView(u".!?…").contains(reason.detail.back());
    return text + u' ' + reason.detail + (isEnded ? QString() : QStringLiteral("."));
}

bool isPassing(const AppUpdateReason& reason) { return rowOf(reason.code).isPassing; }

} // namespace tessellar
