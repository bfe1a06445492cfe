#pragma once

#include <QByteArray>

#include <expected>

namespace tessellar {

// Administrator's rights that one program obtains from the system and another checks. The build chooses
// the implementation: administrator_rights.cpp, where the system is asked about the peer itself and
// there is nothing to carry, or macos/administrator_rights.cpp.
//
// On a Mac this is Authorization Services' C interface and not `osascript ... with administrator
// privileges`: that runs a command as root, while the helper needs proof that the user agreed to this
// request, in a form that it can check. Unproven: compiled against declarations, never run.

enum class RightsRefusal { canceled, denied, externalizationFailed };

/// Whether grants are carried at all.
bool carriesAdministratorGrants();

/// Asks for an administrator's rights, with a prompt where the system wants one; blocks. The external
/// form of the grant.
std::expected<QByteArray, RightsRefusal> obtainAdministratorGrant();

/// Whether a grant from another program holds now. Asks nobody.
bool isAdministratorGrant(const QByteArray& grant);

} // namespace tessellar
