#pragma once

#include "smartfolders/bundle_answer_cache.h"
#include "smartfolders/bundle_findings.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// Combines all that is known of an application: its bundle, tools' answers, the system's last use and
/// the launcher's own knowledge. `pending` are the needs still being gathered.
SmartFolderAppFacts factsOf(const AppEntry& app, const BundleFindings& bundle,
                            const BundleAnswers& answers,
                            const std::optional<Instant>& lastUsedBySystem, SmartFolderNeeds pending,
                            const SmartFolderRuntimeFacts& runtime, const QString& home);

/// When a bundle was last opened by any means, from the system's attribute on the bundle, which it sets
/// outside its own folders. Runs no tool.
std::optional<Instant> lastUsedBySystem(const FileSystem& files, const QString& bundle);

} // namespace tessellar
