#pragma once

#include "cleanup/apple_script_interpreter.h"
#include "cleanup/trash.h"

namespace tessellar {

/// One for each requested path: where Finder put it, as a host path, or why it did not.
struct FinderTrashOutcome {
    std::optional<QByteArray> trashedURL;
    std::optional<QString> message;

    bool operator==(const FinderTrashOutcome&) const = default;
};

/// The script that has Finder delete these host paths and report on each; nothing when a path is not
/// UTF-8, and so cannot stand in a script.
std::optional<QByteArray> finderTrashScript(const QList<QByteArray>& hostPaths);
/// What the script's report says of `count` paths. The first line on a path counts.
QList<FinderTrashOutcome> finderTrashOutcomes(const QByteArray& report, qsizetype count);
/// What an error's number means to the user.
QString finderTrashMessage(std::optional<int> number);

/// The Trash as Finder fills it, so that its "Put Back" works.
class FinderTrash final : public Trash {
public:
    static constexpr qsizetype pathsPerRun = 100;

    FinderTrash(const FileSystem& files, AppleScriptInterpreter& interpreter)
        : _files(files), _interpreter(interpreter) {}

    bool isAvailable() const { return _interpreter.isAvailable(); }
    QList<TrashResult> moveToTrash(const QStringList& paths, std::stop_token stop) override;

private:
    QList<FinderTrashOutcome> run(const QList<QByteArray>& hostPaths, std::stop_token stop);

    const FileSystem& _files;
    AppleScriptInterpreter& _interpreter;
};

} // namespace tessellar
