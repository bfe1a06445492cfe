#pragma once

#include "smartfolders/bundle_answer_cache.h"
#include "smartfolders/bundle_findings.h"
#include "smartfolders/smart_folder_app_facts.h"

namespace tessellar {

/// All that is known of an application: what its bundle says, what tools said of it, when the system
/// last saw it used, and what the launcher knows besides. `pending` are the tools that are still asked.
SmartFolderAppFacts factsOf(const AppEntry& app, const BundleFindings& bundle,
                            const BundleAnswers& answers,
                            const std::optional<Instant>& lastUsedBySystem, SmartFolderNeeds pending,
                            const SmartFolderRuntimeFacts& runtime, const QString& home);

/// When a bundle was last opened by whatever way, where the system has noted that on the bundle itself.
/// It does so for applications outside its own folders. Never starts a tool.
std::optional<Instant> lastUsedBySystem(const FileSystem& files, const QString& bundle);

} // namespace tessellar
