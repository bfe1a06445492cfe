#include "platform/opener.h"

#include "platform/texts.h"

namespace tessellar {

Task Opener::openApplication(const QString& path, Done done) const {
    return open({QByteArrayLiteral("-a"), _machine.files.hostPath(path)}, std::move(done));
}

Task Opener::openUrl(const QString& url, Done done) const {
    return open({url.toUtf8()}, std::move(done));
}

Task Opener::reveal(const QString& path, Done done) const {
    return open({QByteArrayLiteral("-R"), _machine.files.hostPath(path)}, std::move(done),
                _machine.files.hostPath(FileSystem::parent(path)));
}

Task Opener::open(QList<QByteArray> arguments, Done done, std::optional<QByteArray> forDesktop) const {
    Command command{.executable = _machine.files.hostPath(QStringLiteral("/usr/bin/open")),
                    .arguments = std::move(arguments),
                    .environment = _machine.environment,
                    .maximumOutput = 64u << 10,
                    .input = {}};
    return _machine.workers.run(
        Lane::actions,
        [&files = _machine.files, &commands = _machine.commands, command = std::move(command),
         forDesktop = std::move(forDesktop)](std::stop_token stop) mutable {
            const QString desktopTool = QStringLiteral("/usr/bin/xdg-open");
            if (forDesktop && files.isExecutableFile(desktopTool)) {
                command.executable = files.hostPath(desktopTool);
                command.arguments = {*forDesktop};
            }
            return commands.run(command, stop);
        },
        [done = std::move(done)](const CommandResult& result) mutable {
            if (result.succeeded())
                return done({});
            const QString words = trimmed(QString::fromUtf8(result.standardError));
            done(std::unexpected(words.isEmpty() ? Texts::tr("The system did not open it.") : words));
        });
}

} // namespace tessellar
