#include "smartfolders/smart_folder_app_facts.h"

#include "smartfolders/smart_folder_raw_values.h"

namespace tessellar {

bool SmartFolderAppFacts::operator==(const SmartFolderAppFacts&) const = default;

namespace json {

using F = SmartFolderAppFacts;

static constexpr auto list =
    fields(required("entry", &F::entry), optional("developer", &F::developer),
           optional("publisher", &F::publisher), optional("signingTeamID", &F::signingTeamID),
           optional("version", &F::version), optional("build", &F::build),
           optional("installedDate", &F::installedDate), optional("firstSeenDate", &F::firstSeenDate),
           optional("applicationLocation", &F::applicationLocation),
           optional("installSource", &F::installSource),
           optional("distributionChannel", &F::distributionChannel), optional("platform", &F::platform),
           optional("architectures", &F::architectures),
           optional("minimumMacOSVersion", &F::minimumMacOSVersion),
           optional("lastUsedDate", &F::lastUsedDate), optional("launchCount", &F::launchCount),
           optional("isNeverUsed", &F::isNeverUsed), optional("updateStatus", &F::updateStatus),
           optional("hasCustomIcon", &F::hasCustomIcon),
           required("declaredPermissions", &F::declaredPermissions));

Decoded<F> Codec<F>::decode(const QJsonValue& value) { return decodeRecord<F>(value, list); }
QJsonValue Codec<F>::encode(const F& facts) { return encodeRecord(facts, list); }

} // namespace json
} // namespace tessellar
