#pragma once
#include <CoreFoundation/CoreFoundation.h>
#include <stddef.h>
#ifdef __cplusplus
extern "C" {
#endif
enum { errSecSuccess = 0 };

typedef struct AuthorizationOpaqueRef* AuthorizationRef;
typedef const char* AuthorizationString;
typedef UInt32 AuthorizationFlags;
enum {
    kAuthorizationFlagDefaults = 0,
    kAuthorizationFlagInteractionAllowed = 1 << 0,
    kAuthorizationFlagExtendRights = 1 << 1,
    kAuthorizationFlagDestroyRights = 1 << 3
};
enum { errAuthorizationSuccess = 0, errAuthorizationCanceled = -60006 };
enum { kAuthorizationExternalFormLength = 32 };
typedef struct {
    char bytes[kAuthorizationExternalFormLength];
} AuthorizationExternalForm;
typedef struct {
    AuthorizationString name;
    size_t valueLength;
    void* value;
    UInt32 flags;
} AuthorizationItem;
typedef struct {
    UInt32 count;
    AuthorizationItem* items;
} AuthorizationItemSet;
typedef AuthorizationItemSet AuthorizationRights;
typedef AuthorizationItemSet AuthorizationEnvironment;
OSStatus AuthorizationCreate(const AuthorizationRights* rights,
                             const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                             AuthorizationRef* authorization);
OSStatus AuthorizationFree(AuthorizationRef authorization, AuthorizationFlags flags);
OSStatus AuthorizationCopyRights(AuthorizationRef authorization, const AuthorizationRights* rights,
                                 const AuthorizationEnvironment* environment, AuthorizationFlags flags,
                                 AuthorizationRights** authorized);
OSStatus AuthorizationMakeExternalForm(AuthorizationRef authorization, AuthorizationExternalForm* form);
OSStatus AuthorizationCreateFromExternalForm(const AuthorizationExternalForm* form,
                                             AuthorizationRef* authorization);

typedef struct __SecCode* SecCodeRef;
typedef const struct __SecCode* SecStaticCodeRef;
typedef struct __SecRequirement* SecRequirementRef;
typedef UInt32 SecCSFlags;
enum { kSecCSDefaultFlags = 0, kSecCSSigningInformation = 1 << 1 };
extern const CFStringRef kSecGuestAttributeAudit;
extern const CFStringRef kSecCodeInfoTeamIdentifier;
OSStatus SecCodeCopySelf(SecCSFlags flags, SecCodeRef* self);
OSStatus SecCodeCopyStaticCode(SecCodeRef code, SecCSFlags flags, SecStaticCodeRef* staticCode);
OSStatus SecCodeCopyGuestWithAttributes(SecCodeRef host, CFDictionaryRef attributes, SecCSFlags flags,
                                        SecCodeRef* guest);
OSStatus SecCodeCheckValidity(SecCodeRef code, SecCSFlags flags, SecRequirementRef requirement);
OSStatus SecCodeCopySigningInformation(SecStaticCodeRef code, SecCSFlags flags,
                                       CFDictionaryRef* information);
OSStatus SecRequirementCreateWithString(CFStringRef text, SecCSFlags flags,
                                        SecRequirementRef* requirement);
#ifdef __cplusplus
}
#endif
