// The removal helper: a small program that runs as root while an application is removed, and moves what
// the user has no permission to move. The system starts it when someone connects to its socket; it can
// also be started by hand. It exits when idle.
//
//     tessellar-removal-helper [--root DIR --home PATH] [--socket PATH]
//
// --root and --home let an administrator try it on a folder that holds a Mac's layout.

#include "helper/helper_server.h"

#include "platform/activated_socket.h"
#include "platform/administrator_rights.h"
#include "platform/machine.h"
#include "platform/peer_code.h"
#include "platform/version.h"

#include <QRandomGenerator>

#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace tessellar;

namespace {

struct Options {
    QByteArray root = "/";
    std::optional<QString> home;
    QByteArray socket = removalHelperSocket();
};

std::optional<Options> optionsOf(int count, char** words) {
    Options options;
    for (int i = 1; i < count; i += 2) {
        const QByteArray word = words[i];
        if (i + 1 == count)
            return std::nullopt;
        if (word == "--root")
            options.root = words[i + 1];
        else if (word == "--home")
            options.home = FileSystem::fromHostBytes(words[i + 1]);
        else if (word == "--socket")
            options.socket = words[i + 1];
        else
            return std::nullopt;
    }
    return options;
}

std::optional<QString> homeOf(std::uint32_t user) {
    passwd found{};
    passwd* result = nullptr;
    std::array<char, 16'384> buffer{};
    if (::getpwuid_r(user, &found, buffer.data(), buffer.size(), &result) != 0 || !result)
        return std::nullopt;
    return FileSystem::fromHostBytes(result->pw_dir);
}

/// Creates the folder of the journal, which is the helper's own and closed to all others.
bool prepareFolder(const QByteArray& folder) {
    struct stat status {};
    (void)::mkdir(folder.constData(), 0700);
    return ::lstat(folder.constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & 022) == 0;
}

QByteArray freshNonce() {
    std::array<quint32, 8> words{};
    QRandomGenerator::system()->fillRange(words.data(), words.size());
    return QByteArray(reinterpret_cast<const char*>(words.data()), sizeof words);
}

int fail(const char* what, int error) {
    std::fprintf(stderr, "tessellar-removal-helper: %s: %s\n", what, std::strerror(error));
    return 1;
}

} // namespace

int main(int count, char** words) {
    if (count == 2 && QByteArray(words[1]) == "--version") {
        std::printf("tessellar-removal-helper %s\n", tessellar::versionText().c_str());
        return 0;
    }
    const auto options = optionsOf(count, words);
    if (!options) {
        std::fputs("tessellar-removal-helper [--root DIR --home PATH] [--socket PATH]\n", stderr);
        return 2;
    }
    ::umask(077);
    const bool isRooted = options->root != "/";
    const QByteArray journal =
        isRooted ? options->root + "/.tessellar-removal-helper" : QByteArray(TESSELLAR_HELPER_STATE);
    if (!prepareFolder(journal))
        return fail(journal.constData(), EACCES);

    auto listening = activatedSocket();
    if (!listening) {
        auto own = listenLocally(options->socket, SocketAccess::everyone);
        if (!own)
            return fail(options->socket.constData(), own.error());
        listening = *std::move(own);
    }
    const FileSystem host;
    ProcessRunner commands;
    PolkitCheck polkit(host, commands);
    GrantCheck grants;
    AuthorizationCheck& authorization =
        carriesAdministratorGrants() ? static_cast<AuthorizationCheck&>(grants) : polkit;
    FileOperations operations(options->root, journal);
    operations.settle();
    RequestHandler handler(
        operations, authorization, [&](std::uint32_t user) -> std::optional<HelperClient> {
            const auto home = options->home ? options->home : homeOf(user);
            if (!home)
                return std::nullopt;
            return HelperClient{user,
                                {*home + QStringLiteral("/.Trash"),
                                 *home + QStringLiteral("/.local/share/Trash/files")}};
        });
    HelperServer::Options serving;
    if (!isRooted)
        serving.accepts = [](int socket) { return isPeerCodeAccepted(socket, applicationIdentifier); };
    HelperServer(handler, freshNonce, serving).serve(listening->get(), {});
    return 0;
}
