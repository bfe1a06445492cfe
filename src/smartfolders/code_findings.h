#pragma once

#include "model/json.h"
#include "platform/process.h"

#include <optional>

namespace tessellar {

/// Who signed a bundle's code.
enum class CodeSignature {
    none,
    adHoc, ///< signed without an identity
    developerId,
    appStore,
    apple, ///< part of the system
    other,
};

/// Facts from a bundle's signature, its entitlements and the system's assessment; nullopt if unknown.
struct CodeFindings {
    std::optional<CodeSignature> signature;
    std::optional<bool> isHardened; ///< uses the hardened runtime
    std::optional<bool> isNotarized;
    std::optional<bool> isSandboxed;

    bool operator==(const CodeFindings&) const = default;
};

/// Parses the result of `codesign -dvv --entitlements - --xml`.
CodeFindings parseCode(const CommandResult& result);
/// Parses the result of `spctl --assess -vv`: whether the code is notarized.
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
