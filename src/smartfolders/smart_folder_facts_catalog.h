#pragma once

#include "platform/machine.h"
#include "platform/move_only_function.h"
#include "smartfolders/bundle_findings.h"
#include "smartfolders/smart_folder_app_facts.h"

#include <QSet>

namespace tessellar {

/// Gathers the facts of applications: looks into their bundles, remembers what it found as long as a
/// bundle is unchanged, and adds what the launcher knows at the moment.
///
/// Requests are worked off one after another, each on all workers, and their results arrive on the main
/// thread. An unchanged application costs two calls of `stat` and keeps its very record. Inspections
/// for which a tool has to run are made only when they are asked for.
class SmartFolderFactsCatalog {
public:
    /// The state of a bundle: what was found counts while this stays equal.
    struct Fingerprint {
        QString standardizedPath;
        std::optional<Instant> modificationDate; ///< of the bundle
        std::optional<quint64> fileSize;
        std::optional<QString> bundleIdentifier;
        std::optional<QString> originalName;
        std::optional<QString> category;
        std::optional<QString> version;
        std::optional<QString> build;

        bool operator==(const Fingerprint&) const = default;
    };

    struct Request {
        QList<AppEntry> apps;
        SmartFolderRuntimeFacts runtime;
        QSet<SmartFolderInspection> inspections; ///< those that are needed, see `inspectionsNeeded`
    };
    using Done = MoveOnlyFunction<void(SmartFolderFactsList)>;

    explicit SmartFolderFactsCatalog(const Machine& machine);
    /// What is under way ends by itself and reaches nobody.
    ~SmartFolderFactsCatalog();
    SmartFolderFactsCatalog(const SmartFolderFactsCatalog&) = delete;
    SmartFolderFactsCatalog& operator=(const SmartFolderFactsCatalog&) = delete;

    /// Calls `done` with one record for each application, in their order, unless the task is cancelled.
    /// What a cancelled request has found stays known.
    [[nodiscard]] Task facts(Request request, Done done);

    /// How many times a bundle was looked into so far, by reading it or by a tool.
    quint64 inspectionCount() const;

    /// Where a bundle lies, by its entry.
    static SmartFolderApplicationLocation location(const AppEntry& app, const QString& home);

private:
    class State;
    std::shared_ptr<State> _state;
};

} // namespace tessellar
