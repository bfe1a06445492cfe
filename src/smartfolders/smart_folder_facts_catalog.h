#pragma once

#include "platform/machine.h"
#include "smartfolders/smart_folder_app_facts.h"

#include <functional>

namespace tessellar {

/// Gathers the facts of applications: inspects their bundles, caching the results while a bundle is
/// unchanged, and adds what the launcher knows.
///
/// A request runs up to two stages, depending on its needs:
///
///     1. the bundles' own files, on all workers: milliseconds, and two stat calls for an unchanged
///        bundle;
///     2. the tools, for bundles without cached answers: seconds, or longer if a tool hangs.
///
/// Results arrive after the first stage, during the second, and at the end; unchanged applications keep
/// their shared record. Each stage handles one request at a time, so that tools never delay files, and
/// no bundle is inspected twice at once. Tools' answers are cached between runs.
class SmartFolderFactsCatalog {
public:
    /// Identifies the state of a bundle; cached findings are valid while it stays equal.
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
    /// One record per application, in order. While `isComplete` is false, some facts are pending and
    /// another call follows.
    using Gathered = std::function<void(SmartFolderFactsList facts, bool isComplete)>;

    /// How often partial results are reported while tools run.
    static constexpr std::chrono::milliseconds partialResultInterval{500};

    /// Caches tools' answers in the file `cachePath`, if given.
    explicit SmartFolderFactsCatalog(const Machine& machine, const QString& cachePath = {});
    /// Running work finishes on its own without reporting.
    ~SmartFolderFactsCatalog();
    SmartFolderFactsCatalog(const SmartFolderFactsCatalog&) = delete;
    SmartFolderFactsCatalog& operator=(const SmartFolderFactsCatalog&) = delete;

    /// Calls `gathered` at least once, unless the task is cancelled. Findings of a cancelled request
    /// stay cached.
    [[nodiscard]] Task facts(Request request, Gathered gathered);

    /// How many inspections, by reading a bundle or running a tool, were made so far.
    quint64 inspectionCount() const;

    /// The kind of place where an application is installed.
    static SmartFolderApplicationLocation location(const AppEntry& app, const QString& home);

private:
    class State;
    std::shared_ptr<State> _state;
};

} // namespace tessellar
