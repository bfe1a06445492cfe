#pragma once

#include "model/json.h"
#include "platform/machine.h"
#include "smartfolders/code_findings.h"

#include <atomic>

namespace tessellar {

/// The result of reading a code signature.
struct SignatureFindings {
    std::optional<QString> developer; ///< from a Developer ID, without the team; or "Apple"
    std::optional<QString> teamID;

    bool operator==(const SignatureFindings&) const = default;
};

/// The signer of the system's own software.
inline const QString systemDeveloper = QStringLiteral("Apple");

/// Parses the output of `codesign -dvv`.
SignatureFindings parseSignature(const QByteArray& output);
/// Parses the output of `lipo -archs`; nullopt if any word is not an architecture.
std::optional<QStringList> parseArchitectures(const QByteArray& output);

/// A tool's answer about a bundle; `findings` is empty if the tool failed.
template <typename Findings>
struct ToolAnswer {
    std::optional<Findings> findings;
    bool isCacheable = true; ///< the tool completed: it would give the same answer again

    bool operator==(const ToolAnswer&) const = default;
};

/// The tools' answers about one bundle; nullopt for those not asked.
struct BundleAnswers {
    std::optional<ToolAnswer<SignatureFindings>> signature;
    std::optional<ToolAnswer<QStringList>> architectures;

    bool operator==(const BundleAnswers&) const = default;
};

/// Runs the tools that inspect executables, for one round of inspections. A tool that hangs is given up
/// after a few bundles, so a round takes seconds. Thread-safe.
///
/// nullopt if the tool did not run, because it is missing, was given up or stopped; it may be retried
/// later.
class BundleTools {
public:
    explicit BundleTools(const Machine& machine);

    bool canReadSignatures() const { return _codesign.isUsable(); }
    bool canReadArchitectures() const { return _lipo.isUsable(); }

    std::optional<ToolAnswer<QStringList>> architectures(const QString& executablePath,
                                                         std::stop_token stop);
    std::optional<ToolAnswer<SignatureFindings>> signature(const QString& bundlePath,
                                                           std::stop_token stop);
    /// For single applications: what the signature does not tell is assessed by the system, which takes
    /// seconds.
    std::optional<CodeFindings> code(const QString& bundlePath, std::stop_token stop);

private:
    struct Tool {
        QString path;
        std::chrono::milliseconds timeout;
        bool isInstalled;
        std::atomic<int> timeouts = 0;

        bool isUsable() const;
    };
    /// The result of a run that ended by itself within all limits, successful or not.
    std::optional<ToolAnswer<CommandResult>> run(Tool& tool, QList<QByteArray> arguments,
                                                 const QString& path, std::stop_token stop);

    const Machine& _machine;
    Tool _lipo;
    Tool _codesign;
    Tool _spctl;
};

} // namespace tessellar
