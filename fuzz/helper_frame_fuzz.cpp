// What a client sends to the removal helper: one frame, which is answered whatever it is, and does
// nothing without an approval.

#include "fuzz/memory_folder.h"
#include "fuzz/touch_all.h"
#include "helper/request_handler.h"

#include <sys/socket.h>
#include <unistd.h>

using namespace tessellar;

namespace {

class Nobody final : public AuthorizationCheck {
public:
    Answer check(const PeerCredentials&, const PrivilegedFileOperationRequest&, const QByteArray&,
                 std::stop_token) override {
        return Answer::denied;
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFolder folder;
    static const QByteArray root = folder.hostPath().toUtf8();
    static FileOperations operations(root, root);
    static Nobody nobody;
    static RequestHandler handler(operations, nobody, [](std::uint32_t user) {
        return std::optional(HelperClient{user, {QStringLiteral("/Users/ada/.Trash")}});
    });
    int ends[2];
    fuzz::require(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0);
    (void)!::send(ends[0], data, size, MSG_NOSIGNAL | MSG_DONTWAIT);
    ::shutdown(ends[0], SHUT_WR);
    const auto frame = readFrame(ends[1], helper_limits::frameBytes, std::chrono::milliseconds(50));
    ::close(ends[0]);
    ::close(ends[1]);
    // Without the frame's length in front of them, the bytes are a message as well.
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    for (const QByteArray& message : {frame.value_or(QByteArray()), bytes}) {
        const QByteArray reply = handler.answer(message, PeerCredentials{}, "nonce");
        const auto response = json::decodeDocument<PrivilegedFileOperationResponse>(reply);
        fuzz::require(response && (response->error || response->outcomes.isEmpty()));
    }
    return 0;
}
