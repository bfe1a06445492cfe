#pragma once

#include "model/json.h"
#include "smartfolders/smart_folder_vocabulary.h"

// The vocabulary's raw values in files; include to encode, decode or list them.
namespace tessellar::json {

template <>
struct RawValues<SmartFolderMatchMode> : EnumeratorNames<SmartFolderMatchMode::any> {};
template <>
struct RawValues<SmartFolderApplicationLocation>
    : EnumeratorNames<SmartFolderApplicationLocation::other> {};
template <>
struct RawValues<SmartFolderInstallSource> : EnumeratorNames<SmartFolderInstallSource::manual> {};
template <>
struct RawValues<SmartFolderDistributionChannel>
    : EnumeratorNames<SmartFolderDistributionChannel::unsupported> {};
template <>
struct RawValues<SmartFolderPlatform> : EnumeratorNames<SmartFolderPlatform::iOSOnMac> {};
template <>
struct RawValues<SmartFolderUpdateState> : EnumeratorNames<SmartFolderUpdateState::notChecked> {};
template <>
struct RawValues<SmartFolderPermission> : EnumeratorNames<SmartFolderPermission::documents> {};
template <>
struct RawValues<SmartFolderRelativeDateUnit> : EnumeratorNames<SmartFolderRelativeDateUnit::months> {};
template <>
struct RawValues<SmartFolderSortDirection> : EnumeratorNames<SmartFolderSortDirection::descending> {};
template <>
struct RawValues<SmartFolderTemplate> : EnumeratorNames<SmartFolderTemplate::macAppStoreApps> {};

} // namespace tessellar::json
