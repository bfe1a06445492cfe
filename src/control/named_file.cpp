#include "control/named_file.h"

#include "platform/texts.h"

#include <QDir>
#include <QFileInfo>

namespace tessellar {

static NamedFile namedFile(const FileSystem& files, const QString& directory, const QString& name) {
    static const FileSystem host;
    const QString path = QDir::cleanPath(QDir(directory).absoluteFilePath(name));
    if (const auto onMachine = files.pathFromHost(FileSystem::toHostBytes(path).value_or(QByteArray())))
        return {*onMachine, &files};
    if (!QFileInfo::exists(path) && name.startsWith(u'/') && files.exists(name))
        return {name, &files};
    return {path, &host};
}

NamedFile namedFile(const CommandCall& call, const QString& name) {
    return namedFile(call.machine.files, call.options.directory, name);
}

void readNamedFile(const std::shared_ptr<CommandCall>& call, const QString& name,
                   std::uint64_t maximumBytes, std::function<void(const QByteArray&)> done) {
    call->whenCancelled([call] {
        call->held.clear();
        call->fail({QStringLiteral("cancelled"), Texts::tr("The command was cancelled."), {}});
    });
    call->held.push_back(std::make_shared<Task>(call->machine.workers.run(
        [&files = call->machine.files, directory = call->options.directory, name,
         maximumBytes](const std::stop_token&) {
            const NamedFile file = namedFile(files, directory, name);
            // Its own files, such as the standard input, are the launcher's here.
            if (file.path.startsWith(u"/dev/") || file.path.startsWith(u"/proc/"))
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
