#pragma once

#include "cleanup/apple_script_interpreter.h"
#include "cleanup/trash.h"

namespace tessellar {

/// The result for one path: its host path in the Trash, or an error.
struct FinderTrashOutcome {
    std::optional<QByteArray> trashedURL;
    std::optional<QString> message;

    bool operator==(const FinderTrashOutcome&) const = default;
};

/// The script that makes the Finder trash these host paths and report on each; nullopt if a path is not
/// UTF-8 and cannot be written in a script.
std::optional<QByteArray> finderTrashScript(const QList<QByteArray>& hostPaths);
/// Parses the script's report on `count` paths. The first line for a path wins.
QList<FinderTrashOutcome> finderTrashOutcomes(const QByteArray& report, qsizetype count);
/// The user's message for an error number.
QString finderTrashMessage(std::optional<int> number);

/// Uses the Finder, so that its "Put Back" works.
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
