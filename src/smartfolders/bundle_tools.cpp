#include "smartfolders/bundle_tools.h"

#include <QRegularExpression>

namespace tessellar {

namespace {

constexpr int timeoutsBeforeGivingUp = 3;
constexpr std::uint64_t maximumToolOutput = 64u << 10;
constexpr qsizetype maximumArchitectures = 16;
/// Self-signed certificates may contain any name, and names are kept in the cache.
constexpr qsizetype longestName = 500;

} // namespace

SignatureFindings parseSignature(const QByteArray& output) {
    static const QByteArray authority = "Authority=Developer ID Application: ";
    static const QByteArray system = "Authority=Software Signing";
    static const QByteArray team = "TeamIdentifier=";
    static const QRegularExpression teamSuffix(QStringLiteral(R"(\s*\([0-9A-Z]{10}\)$)"));
    SignatureFindings result;
    for (const QByteArray& line : output.split('\n')) {
        if (!result.developer && line.startsWith(authority)) {
            result.developer = QString::fromUtf8(line.sliced(authority.size()))
                                   .trimmed()
                                   .remove(teamSuffix)
                                   .left(longestName);
        } else if (!result.developer && line == system) {
            result.developer = systemDeveloper;
        } else if (!result.teamID && line.startsWith(team)) {
            const QString identifier = QString::fromUtf8(line.sliced(team.size())).trimmed();
            if (identifier != u"not set")
                result.teamID = identifier.left(longestName);
        }
    }
    if (result.developer && result.developer->isEmpty())
        result.developer.reset();
    if (result.teamID && result.teamID->isEmpty())
        result.teamID.reset();
    return result;
}

std::optional<QStringList> parseArchitectures(const QByteArray& output) {
    static const QRegularExpression name(QStringLiteral("^[0-9A-Za-z_]{1,32}$"));
    const QStringList words = QString::fromLatin1(output).split(
        QRegularExpression(QStringLiteral("\\s+")), Qt::SkipEmptyParts);
    if (words.isEmpty() || words.size() > maximumArchitectures ||
        !std::ranges::all_of(words, [](const QString& word) { return name.match(word).hasMatch(); }))
        return std::nullopt;
    return words;
}

BundleTools::BundleTools(const Machine& machine)
    : _machine(machine)
    , _lipo{.path = QStringLiteral("/usr/bin/lipo"),
            .timeout = std::chrono::seconds(5),
            .isInstalled = machine.files.isExecutableFile(QStringLiteral("/usr/bin/lipo"))}
    , _codesign{.path = QStringLiteral("/usr/bin/codesign"),
                .timeout = std::chrono::seconds(10),
                .isInstalled = machine.files.isExecutableFile(QStringLiteral("/usr/bin/codesign"))}
    , _spctl{.path = QStringLiteral("/usr/sbin/spctl"),
             .timeout = std::chrono::seconds(20),
             .isInstalled = machine.files.isExecutableFile(QStringLiteral("/usr/sbin/spctl"))} {}

bool BundleTools::Tool::isUsable() const { return isInstalled && timeouts < timeoutsBeforeGivingUp; }

std::optional<ToolAnswer<CommandResult>> BundleTools::run(Tool& tool, QList<QByteArray> arguments,
                                                          const QString& path, std::stop_token stop) {
    using Outcome = CommandResult::Outcome;
    if (!tool.isUsable() || stop.stop_requested())
        return std::nullopt;
    // The tool follows links on the host; here they must stay within the root.
    const auto resolved = _machine.files.resolved(path);
    if (!resolved)
        return ToolAnswer<CommandResult>();
    arguments.append(_machine.files.hostPath(*resolved));
    // A line break in a path would let a bundle forge lines of the output.
    if (arguments.last().contains('\n') || arguments.last().contains('\r'))
        return ToolAnswer<CommandResult>();
    CommandResult result = _machine.commands.run({.executable = _machine.files.hostPath(tool.path),
                                                  .arguments = std::move(arguments),
                                                  .environment = _machine.environment,
                                                  .timeout = tool.timeout,
                                                  .maximumOutput = maximumToolOutput},
                                                 stop);
    if (result.outcome == Outcome::timedOut)
        ++tool.timeouts;
    if (result.outcome == Outcome::cancelled || result.outcome == Outcome::couldNotLaunch)
        return std::nullopt;
    ToolAnswer<CommandResult> answer{.isCacheable = result.outcome == Outcome::exited};
    if (answer.isCacheable && !result.outputTruncated)
        answer.findings = std::move(result);
    return answer;
}

static bool hasSucceeded(const ToolAnswer<CommandResult>& answer) {
    return answer.findings && answer.findings->succeeded();
}

std::optional<ToolAnswer<QStringList>> BundleTools::architectures(const QString& executablePath,
                                                                  std::stop_token stop) {
    if (!_machine.files.isRegularFile(executablePath))
        return ToolAnswer<QStringList>();
    const auto answer = run(_lipo, {"-archs"}, executablePath, std::move(stop));
    if (!answer)
        return std::nullopt;
    return ToolAnswer<QStringList>{
        hasSucceeded(*answer) ? parseArchitectures(answer->findings->standardOutput) : std::nullopt,
        answer->isCacheable};
}

std::optional<ToolAnswer<SignatureFindings>> BundleTools::signature(const QString& bundlePath,
                                                                    std::stop_token stop) {
    const auto answer = run(_codesign, {"-dvv"}, bundlePath, std::move(stop));
    if (!answer)
        return std::nullopt;
    return ToolAnswer<SignatureFindings>{
        hasSucceeded(*answer) ? std::optional(parseSignature(answer->findings->standardError))
                              : std::nullopt,
        answer->isCacheable};
}

std::optional<CodeFindings> BundleTools::code(const QString& bundlePath, std::stop_token stop) {
    const auto shown = run(_codesign, {"-dvv", "--entitlements", "-", "--xml"}, bundlePath, stop);
    if (!shown || !shown->findings)
        return std::nullopt;
    CodeFindings found = parseCode(*shown->findings);
    // A notarization ticket need not be stapled to the bundle.
    if (found.signature != CodeSignature::developerId || found.isNotarized)
        return found;
    const auto assessed =
        run(_spctl, {"--assess", "--type", "execute", "-vv"}, bundlePath, std::move(stop));
    if (assessed && assessed->findings)
        found.isNotarized = parseAssessment(*assessed->findings);
    return found;
}

} // namespace tessellar
