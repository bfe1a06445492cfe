#pragma once

#include "platform/bundle.h"
#include "platform/machine.h"
#include "smartfolders/smart_folder_app_facts.h"

#include <atomic>
#include <stop_token>

namespace tessellar {

/// What a bundle itself tells, without running a tool.
struct BundleFindings {
    bool exists = false;
    bool isFromStore = false; ///< carries a store's receipt or metadata
    bool hasSparkle = false;  ///< declares a feed or carries the framework
    bool hasKeystone = false;
    std::optional<QString> storeArtist; ///< who made a wrapped application
    std::optional<QString> publisher;
    std::optional<QString> version;
    std::optional<QString> build;
    std::optional<QString> minimumMacOSVersion;
    std::optional<Instant> installedDate;
    std::optional<SmartFolderPlatform> platform;
    QList<SmartFolderPermission> declaredPermissions;
    std::optional<QString> executablePath;
};

BundleFindings readBundleFindings(const FileSystem& files, const Bundle& bundle);

/// What a code signature says.
struct SignatureFindings {
    std::optional<QString> developer; ///< of a Developer ID, without its team
    std::optional<QString> teamID;

    bool operator==(const SignatureFindings&) const = default;
};

/// Reads what `codesign -dvv` printed.
SignatureFindings parseSignature(const QByteArray& output);
/// Reads what `lipo -archs` printed; nothing when a word is no name of an architecture.
std::optional<QStringList> parseArchitectures(const QByteArray& output);

/// The tools that look into executables, for one round of inspections. A tool that hangs is given up
/// after a few bundles, so that a round ends in seconds. Any thread.
class BundleTools {
public:
    explicit BundleTools(const Machine& machine);

    /// What a tool found; nothing inside when it failed. Without a value the tool did not run, because
    /// it is missing, was given up or a stop was requested: it may be asked again another time.
    template <typename Findings>
    using Answer = std::optional<std::optional<Findings>>;

    Answer<QStringList> architectures(const QString& executablePath, std::stop_token stop);
    Answer<SignatureFindings> signature(const QString& bundlePath, std::stop_token stop);

private:
    struct Tool {
        QString path;
        std::chrono::milliseconds timeout;
        bool isThere;
        std::atomic<int> timeouts = 0;
    };
    /// The result of a run that ended by itself in time and within bounds.
    Answer<CommandResult> run(Tool& tool, QList<QByteArray> arguments, const QString& path,
                              std::stop_token stop);

    const Machine& _machine;
    Tool _lipo;
    Tool _codesign;
};

} // namespace tessellar
