#include "control/named_file.h"

#include "platform/texts.h"

#include <QDir>
#include <QFileInfo>

namespace tessellar {

NamedFile namedFile(const CommandCall& call, const QString& name) {
    static const FileSystem host;
    const FileSystem& files = call.machine.files;
    const QString path = QDir::cleanPath(QDir(call.options.directory).absoluteFilePath(name));
    if (const auto onMachine = files.pathFromHost(FileSystem::toHostBytes(path).value_or(QByteArray())))
        return {*onMachine, &files};
    if (!QFileInfo::exists(path) && name.startsWith(u'/') && files.exists(name))
        return {name, &files};
    return {path, &host};
}

void readNamedFile(const std::shared_ptr<CommandCall>& call, const QString& name,
                   std::uint64_t maximumBytes, std::function<void(const QByteArray&)> done) {
    call->whenCancelled([call] {
        call->held.clear();
        call->fail({QStringLiteral("cancelled"), Texts::tr("The command was cancelled."), {}});
    });
    call->held.push_back(std::make_shared<Task>(call->machine.workers.run(
        [call, name, maximumBytes](const std::stop_token&) {
            const NamedFile file = namedFile(*call, name);
            if (file.path.startsWith(
                    u"/dev/")) // such as the standard input, which is the launcher's here
                return std::expected<QByteArray, FileError>(
                    std::unexpect, FileError{FileError::Code::notARegularFile, file.path});
            return file.files->read(file.path, maximumBytes);
        },
        [call, done = std::move(done)](const std::expected<QByteArray, FileError>& bytes) {
            call->whenCancelled([] {});
            if (!bytes)
                return call->fail({QStringLiteral("unreadable"), message(bytes.error()), {}});
            done(*bytes);
        })));
}

} // namespace tessellar
