#pragma once

#include "model/json.h"
#include "platform/machine.h"
#include "smartfolders/code_findings.h"

#include <atomic>

namespace tessellar {

/// What a code signature says.
struct SignatureFindings {
    std::optional<QString>
        developer; ///< of a Developer ID, without its team; Apple of its own software
    std::optional<QString> teamID;

    bool operator==(const SignatureFindings&) const = default;
};

/// Who signed what comes with the system.
inline const QString systemDeveloper = QStringLiteral("Apple");

/// Reads what `codesign -dvv` printed.
SignatureFindings parseSignature(const QByteArray& output);
/// Reads what `lipo -archs` printed; nothing when a word is no name of an architecture.
std::optional<QStringList> parseArchitectures(const QByteArray& output);

/// What a tool said of a bundle that it was asked about; nothing inside when it failed.
template <typename Findings>
struct ToolAnswer {
    std::optional<Findings> findings;
    bool isLasting = true; ///< the tool ran to its end: of the same bundle it will say the same

    bool operator==(const ToolAnswer&) const = default;
};

/// What the tools said of one bundle, as far as they were asked.
struct BundleAnswers {
    std::optional<ToolAnswer<SignatureFindings>> signature;
    std::optional<ToolAnswer<QStringList>> architectures;

    bool operator==(const BundleAnswers&) const = default;
};

/// The tools that look into executables, for one round of inspections. A tool that hangs is given up
/// after a few bundles, so that a round ends in seconds. Any thread.
///
/// No answer: the tool did not run, because it is missing, was given up or a stop was requested; it may
/// be asked again another time.
class BundleTools {
public:
    explicit BundleTools(const Machine& machine);

    bool canTellSignatures() const { return _codesign.isUsable(); }
    bool canTellArchitectures() const { return _lipo.isUsable(); }

    std::optional<ToolAnswer<QStringList>> architectures(const QString& executablePath,
                                                         std::stop_token stop);
    std::optional<ToolAnswer<SignatureFindings>> signature(const QString& bundlePath,
                                                           std::stop_token stop);
    /// For one application at a time: what the signature does not say, the system has to assess, which
    /// takes seconds.
    std::optional<CodeFindings> code(const QString& bundlePath, std::stop_token stop);

private:
    struct Tool {
        QString path;
        std::chrono::milliseconds timeout;
        bool isThere;
        std::atomic<int> timeouts = 0;

        bool isUsable() const;
    };
    /// The result of a run that ended by itself in time and within bounds, whether it succeeded or not.
    std::optional<ToolAnswer<CommandResult>> run(Tool& tool, QList<QByteArray> arguments,
                                                 const QString& path, std::stop_token stop);

    const Machine& _machine;
    Tool _lipo;
    Tool _codesign;
    Tool _spctl;
};

} // namespace tessellar
