// What a client writes to the socket of the launcher that is running.

#include "control/control_socket.h"
#include "fuzz/memory_folder.h"
#include "fuzz/touch_all.h"
#include "platform/host_machine.h"

#include <QCoreApplication>

#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

using namespace tessellar;

namespace {

/// Answers as a command does, and is sometimes in no hurry.
class Echo final : public CommandExecutor {
public:
    void run(const QStringList& words, const CommandOptions& options, CommandOutput output) override {
        output.out(words.join(u' ').toUtf8() + options.directory.toUtf8());
        if (words.size() % 3 == 2 && output.whenCancelled)
            output.whenCancelled([finished = output.finished](Cancellation) { finished(1); });
        else
            output.finished(0);
    }
};

struct Launcher {
    int argc = 1;
    char name[5] = "fuzz";
    char* argv[2] = {name, nullptr};
    QCoreApplication application{argc, argv};
    fuzz::MemoryFolder folder;
    std::unique_ptr<HostMachine> host;
    Echo echo;
    std::unique_ptr<ControlServer> server;
    QByteArray path;

    Launcher() {
        QDir().mkpath(folder.hostPath(QStringLiteral("Users/ada")));
        auto made = HostMachine::make(
            {.root = folder.hostPath(), .home = {}, .locale = QStringLiteral("en_GB"), .now = {}});
        fuzz::require(made.has_value());
        host = *std::move(made);
        const Machine& machine = host->machine();
        fuzz::require(machine.files.createDirectories(machine.places.applicationFolder()).has_value());
        server = std::make_unique<ControlServer>(machine, echo);
        fuzz::require(server->listen());
        path = controlSocketPath(machine).toUtf8();
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static Launcher launcher;
    const int client = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
    sockaddr_un address{.sun_family = AF_UNIX, .sun_path = {}};
    qstrncpy(address.sun_path, launcher.path.constData(), sizeof address.sun_path);
    fuzz::require(::connect(client, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
    (void)!::write(client, data, size);
    for (int turn = 0; turn < 4; ++turn)
        QCoreApplication::processEvents();
    ::close(client);
    for (int turn = 0; turn < 4; ++turn)
        QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    return 0;
}
