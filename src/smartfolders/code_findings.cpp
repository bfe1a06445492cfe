#include "smartfolders/code_findings.h"

#include "platform/property_list.h"

namespace tessellar {

namespace {

struct Line {
    const char* beginning;
    CodeSignature signature;
};

/// The first authority in the signature decides.
constexpr std::array authorities{
    Line{"Signature=adhoc", CodeSignature::adHoc},
    Line{"Authority=Developer ID Application: ", CodeSignature::developerId},
    Line{"Authority=Apple Mac OS Application Signing", CodeSignature::appStore},
    Line{"Authority=Software Signing", CodeSignature::apple}, Line{"Authority=", CodeSignature::other}};

/// True if a code directory's flags contain a word, as in "flags=0x10002(adhoc,runtime)".
bool hasFlag(const QByteArray& line, const QByteArray& flag) {
    const qsizetype flags = line.indexOf("flags=");
    const qsizetype open = flags < 0 ? -1 : line.indexOf('(', flags);
    const qsizetype blank = line.indexOf(' ', flags);
    // Without flags there is no list; the next parenthesis belongs to something else.
    if (open < 0 || (blank >= 0 && blank < open))
        return false;
    return line.sliced(open + 1, line.indexOf(')', open) - open - 1).split(',').contains(flag);
}

/// nullopt if the entitlements cannot be parsed.
std::optional<bool> isSandboxed(const QByteArray& entitlements) {
    if (entitlements.trimmed().isEmpty())
        return false;
    const auto list = parsePropertyList(entitlements);
    return list && list->isDictionary()
               ? std::optional((*list)[QStringLiteral("com.apple.security.app-sandbox")].isTruthy())
               : std::nullopt;
}

} // namespace

CodeFindings parseCode(const CommandResult& result) {
    if (!result.succeeded())
        return result.standardError.contains("code object is not signed at all")
                   ? CodeFindings{CodeSignature::none, false, false, false}
                   : CodeFindings();
    CodeFindings found;
    for (const QByteArray& line : result.standardError.split('\n')) {
        if (!found.signature)
            for (const Line& authority : authorities)
                if (line.startsWith(authority.beginning)) {
                    found.signature = authority.signature;
                    break;
                }
        if (line.startsWith("CodeDirectory "))
            found.isHardened = hasFlag(line, "runtime");
        else if (line == "Notarization Ticket=stapled")
            found.isNotarized = true;
    }
    if (found.signature == CodeSignature::adHoc)
        found.isNotarized = false;
    found.isSandboxed = isSandboxed(result.standardOutput);
    return found;
}

std::optional<bool> parseAssessment(const CommandResult& result) {
    for (const QByteArray& line : (result.standardError + '\n' + result.standardOutput).split('\n')) {
        if (line == "source=Notarized Developer ID")
            return true;
        if (line == "source=Developer ID" || line == "source=Unnotarized Developer ID")
            return false;
    }
    return std::nullopt;
}

} // namespace tessellar
