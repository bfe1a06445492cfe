#include "platform/administrator_rights.h"

namespace tessellar {

bool carriesAdministratorGrants() { return false; }

std::expected<QByteArray, RightsRefusal> obtainAdministratorGrant() { return QByteArray(); }

bool isAdministratorGrant(const QByteArray&) { return false; }

} // namespace tessellar
