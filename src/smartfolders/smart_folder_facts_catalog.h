#pragma once

#include "platform/machine.h"
#include "smartfolders/smart_folder_app_facts.h"

#include <functional>

namespace tessellar {

/// Gathers the facts of applications: looks into their bundles, remembers what it found as long as a
/// bundle is unchanged, and adds what the launcher knows at the moment.
///
/// A request goes through two stages, of which it takes what its needs name:
///
///     1. the bundles' own files, on all workers: milliseconds, and two calls of `stat` for a bundle
///        that is unchanged;
///     2. the tools, for bundles whose answers are not known: seconds, and longer where one hangs.
///
/// Its result arrives after the first stage, while the second is under way, and at the end; an
/// unchanged application keeps its very record. Each stage works off one request after another, so that
/// no tool holds up what files tell, and no bundle is inspected twice at once. What tools said is kept
/// between runs.
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
        SmartFolderNeeds needs; ///< see `needsOf`
    };
    /// One record for each application, in their order. While `isComplete` is false, some still have
    /// facts that are pending, and more will come.
    using Gathered = std::function<void(SmartFolderFactsList facts, bool isComplete)>;

    /// How long it waits, while tools run, before it tells of what else is known.
    static constexpr std::chrono::milliseconds partialResultInterval{500};

    /// What tools said is kept in the file `cachePath`, if any.
    explicit SmartFolderFactsCatalog(const Machine& machine, const QString& cachePath = {});
    /// What is under way ends by itself and reaches nobody.
    ~SmartFolderFactsCatalog();
    SmartFolderFactsCatalog(const SmartFolderFactsCatalog&) = delete;
    SmartFolderFactsCatalog& operator=(const SmartFolderFactsCatalog&) = delete;

    /// Calls `gathered` once or more, unless the task is cancelled. What a cancelled request has found
    /// stays known.
    [[nodiscard]] Task facts(Request request, Gathered gathered);

    /// How many times a bundle was looked into so far, by reading it or by a tool.
    quint64 inspectionCount() const;

    /// Where a bundle lies, by its entry.
    static SmartFolderApplicationLocation location(const AppEntry& app, const QString& home);

private:
    class State;
    std::shared_ptr<State> _state;
};

} // namespace tessellar
