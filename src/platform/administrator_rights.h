#pragma once

#include <QByteArray>

#include <expected>

namespace tessellar {

// Administrator's rights that one program obtains and another verifies. The build picks the
// implementation: macos/administrator_rights.cpp, or administrator_rights.cpp where the verifier asks
// the system about its peer and no grant is passed.
//
// macOS uses the C interface of Authorization Services rather than `osascript ... with administrator
// privileges`: the latter only runs a command as root, while the helper needs verifiable proof that the
// user agreed to this request. Unproven: compiled against declarations, never run.

enum class RightsRefusal { canceled, denied, externalizationFailed };

/// Whether this platform passes grants between programs.
bool carriesAdministratorGrants();

/// Requests administrator's rights, prompting the user if the system wants to, and returns the grant in
/// its external form. Blocks.
std::expected<QByteArray, RightsRefusal> obtainAdministratorGrant();

/// Whether a grant obtained by another program is valid now. Never prompts.
bool isAdministratorGrant(const QByteArray& grant);

} // namespace tessellar
