#include "platform/administrator_rights.h"

#include <Security/Security.h>

#include <cstring>

namespace tessellar {

namespace {

class Authorization {
public:
    Authorization() = default;
    ~Authorization() {
        if (_reference)
            ::AuthorizationFree(_reference, _destroys ? kAuthorizationFlagDestroyRights
                                                      : kAuthorizationFlagDefaults);
    }
    Authorization(const Authorization&) = delete;
    Authorization& operator=(const Authorization&) = delete;

    AuthorizationRef* address() { return &_reference; }
    AuthorizationRef get() const { return _reference; }
    /// Revokes the rights on destruction.
    void destroyRights() { _destroys = true; }

private:
    AuthorizationRef _reference = nullptr;
    bool _destroys = false;
};

OSStatus copyAdministratorRight(AuthorizationRef authorization, AuthorizationFlags flags) {
    AuthorizationItem item{"system.privilege.admin", 0, nullptr, 0};
    const AuthorizationRights rights{1, &item};
    return ::AuthorizationCopyRights(authorization, &rights, nullptr, flags, nullptr);
}

} // namespace

bool carriesAdministratorGrants() { return true; }

std::expected<QByteArray, RightsRefusal> obtainAdministratorGrant() {
    // Kept until the program ends: releasing it would revoke the rights before the helper has checked
    // them. The system lets them expire after some minutes.
    static Authorization authorization;
    if (!authorization.get() &&
        ::AuthorizationCreate(nullptr, nullptr, kAuthorizationFlagDefaults, authorization.address()) !=
            errAuthorizationSuccess)
        return std::unexpected(RightsRefusal::denied);
    const OSStatus status = copyAdministratorRight(
        authorization.get(), kAuthorizationFlagInteractionAllowed | kAuthorizationFlagExtendRights);
    if (status != errAuthorizationSuccess)
        return std::unexpected(status == errAuthorizationCanceled ? RightsRefusal::canceled
                                                                  : RightsRefusal::denied);
    AuthorizationExternalForm form;
    if (::AuthorizationMakeExternalForm(authorization.get(), &form) != errAuthorizationSuccess)
        return std::unexpected(RightsRefusal::externalizationFailed);
    return QByteArray(form.bytes, sizeof form.bytes);
}

bool isAdministratorGrant(const QByteArray& grant) {
    AuthorizationExternalForm form;
    if (grant.size() != qsizetype(sizeof form.bytes))
        return false;
    std::memcpy(form.bytes, grant.constData(), sizeof form.bytes);
    Authorization authorization;
    if (::AuthorizationCreateFromExternalForm(&form, authorization.address()) !=
        errAuthorizationSuccess)
        return false;
    authorization.destroyRights(); // each request is granted separately
    return copyAdministratorRight(authorization.get(), kAuthorizationFlagExtendRights) ==
           errAuthorizationSuccess;
}

} // namespace tessellar
