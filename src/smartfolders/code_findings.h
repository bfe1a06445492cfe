#pragma once

#include "model/json.h"
#include "platform/process.h"

#include <optional>

namespace tessellar {

/// Who vouches for the code of a bundle.
enum class CodeSignature {
    none,
    adHoc, ///< signed by nobody
    developerId,
    appStore,
    apple, ///< what comes with the system
    other,
};

/// What is said of a bundle's code: by its signature, by its entitlements, and by the system's own
/// assessment. What is missing is unknown.
struct CodeFindings {
    std::optional<CodeSignature> signature;
    std::optional<bool> isHardened; ///< runs under the hardened runtime
    std::optional<bool> isNotarized;
    std::optional<bool> isSandboxed;

    bool operator==(const CodeFindings&) const = default;
};

/// Reads what `codesign -dvv --entitlements - --xml` came to.
CodeFindings parseCode(const CommandResult& result);
/// Reads what `spctl --assess -vv` came to: whether the code was notarized.
std::optional<bool> parseAssessment(const CommandResult& result);

template <>
struct json::RawValues<CodeSignature> : json::EnumeratorNames<CodeSignature::other> {};
template <>
struct json::Fields<CodeFindings> {
    using C = CodeFindings;
    static constexpr auto list =
        fields(optional("signature", &C::signature), optional("isHardened", &C::isHardened),
               optional("isNotarized", &C::isNotarized), optional("isSandboxed", &C::isSandboxed));
};

} // namespace tessellar
