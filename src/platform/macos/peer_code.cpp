#include "platform/peer_code.h"

#include "platform/code_requirement.h"

#include <Security/Security.h>
#include <mach/message.h>
#include <sys/socket.h>
#include <sys/un.h>

#include <array>

namespace tessellar {

namespace {

/// Owns a Core Foundation object.
template <typename T>
class Owned {
public:
    Owned() = default;
    explicit Owned(T object) : _object(object) {}
    ~Owned() {
        if (_object)
            ::CFRelease(_object);
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;

    T* address() { return &_object; }
    T get() const { return _object; }
    explicit operator bool() const { return _object != nullptr; }

private:
    T _object = nullptr;
};

/// The team that signed this program; empty if unsigned.
QString ownTeam() {
    Owned<SecCodeRef> self;
    Owned<SecStaticCodeRef> code;
    Owned<CFDictionaryRef> information;
    if (::SecCodeCopySelf(kSecCSDefaultFlags, self.address()) != errSecSuccess ||
        ::SecCodeCopyStaticCode(self.get(), kSecCSDefaultFlags, code.address()) != errSecSuccess ||
        ::SecCodeCopySigningInformation(code.get(), kSecCSSigningInformation, information.address()) !=
            errSecSuccess)
        return {};
    const auto team =
        static_cast<CFStringRef>(::CFDictionaryGetValue(information.get(), kSecCodeInfoTeamIdentifier));
    std::array<char, 64> text{};
    if (!team || !::CFStringGetCString(team, text.data(), text.size(), kCFStringEncodingUTF8))
        return {};
    return QString::fromUtf8(text.data());
}

} // namespace

bool isPeerCodeAccepted(int socket, const QString& bundleIdentifier) {
    audit_token_t token;
    socklen_t size = sizeof token;
    if (::getsockopt(socket, SOL_LOCAL, LOCAL_PEERTOKEN, &token, &size) != 0 || size != sizeof token)
        return false;
    const auto wanted = codeRequirement(bundleIdentifier, ownTeam());
    if (!wanted)
        return false;
    const QByteArray utf8 = wanted->toUtf8();
    const auto bytes = [](const char* data) { return reinterpret_cast<const UInt8*>(data); };
    const Owned<CFStringRef> text(::CFStringCreateWithBytes(
        nullptr, bytes(utf8.constData()), CFIndex(utf8.size()), kCFStringEncodingUTF8, false));
    const Owned<CFDataRef> audit(
        ::CFDataCreate(nullptr, reinterpret_cast<const UInt8*>(&token), sizeof token));
    if (!text || !audit)
        return false;
    const void* key = kSecGuestAttributeAudit;
    const void* value = audit.get();
    const Owned<CFDictionaryRef> attributes(::CFDictionaryCreate(
        nullptr, &key, &value, 1, &kCFTypeDictionaryKeyCallBacks, &kCFTypeDictionaryValueCallBacks));
    Owned<SecRequirementRef> compiled;
    Owned<SecCodeRef> peer;
    return attributes &&
           ::SecRequirementCreateWithString(text.get(), kSecCSDefaultFlags, compiled.address()) ==
               errSecSuccess &&
           ::SecCodeCopyGuestWithAttributes(nullptr, attributes.get(), kSecCSDefaultFlags,
                                            peer.address()) == errSecSuccess &&
           ::SecCodeCheckValidity(peer.get(), kSecCSDefaultFlags, compiled.get()) == errSecSuccess;
}

} // namespace tessellar
