#pragma once

#include "model/json.h"

namespace tessellar {

/// Why a check failed, a channel cannot tell, or an update is held back.
struct AppUpdateReason {
    enum class Code {
        // failed
        unreachable,
        timedOut,
        throttled,
        refused, ///< the server answered with an error
        redirected,
        tooLarge,
        notUnderstood,
        notListed,
        otherApplication,
        noSpotlight,
        brewFailed,
        brewTimedOut,
        brewNotUnderstood,
        // cannot tell
        noSecureAddress,
        noFeed,
        noInstalledVersion,
        sharedListing,
        noMacListing,
        updatesItself,
        alwaysLatest,
        noStoreItem,
        noChannel,
        // held back
        pinned, ///< in Homebrew
    };
    Code code = Code::unreachable;
    QString detail; ///< a tool's output, on one line; may be empty

    bool operator==(const AppUpdateReason&) const = default;
};

/// One sentence, including the detail.
QString message(const AppUpdateReason& reason);

/// True if retrying later may help.
bool isTransient(const AppUpdateReason& reason);

namespace json {

template <>
struct RawValues<AppUpdateReason::Code> : EnumeratorNames<AppUpdateReason::Code::pinned> {};
template <>
struct Fields<AppUpdateReason> {
    static constexpr auto list =
        fields(required("code", &AppUpdateReason::code), defaulted("detail", &AppUpdateReason::detail));
};

} // namespace json
} // namespace tessellar
