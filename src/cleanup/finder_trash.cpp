#include "cleanup/finder_trash.h"

#include "platform/texts.h"

namespace tessellar {
namespace {

constexpr QByteArrayView marker = "<<QZ-FINDER-TRASH>>";
const char* const notPrepared = Texts::noop("Could not prepare the Finder trash request.");
const char* const notReported = Texts::noop("Finder did not report the result of the trash operation.");
const char* const stoppedRemoval = Texts::noop("The removal was stopped.");
const char* const notInTime = Texts::noop("Finder did not answer in time.");
const char* const notMoved = Texts::noop("Finder did not move the item to the Trash.");

constexpr const char* body = R"(set reportLines to ""
tell application "Finder"
	repeat with itemIndex from 1 to count sourcePaths
		set sourcePath to item itemIndex of sourcePaths
		try
			set deletedItem to delete (POSIX file sourcePath as alias)
			set deletedPath to POSIX path of (deletedItem as alias)
			set reportLines to reportLines & "<<QZ-FINDER-TRASH>>" & tab & ((itemIndex - 1) as text) & tab & "OK" & tab & deletedPath & linefeed
		on error errorMessage number errorNumber
			set reportLines to reportLines & "<<QZ-FINDER-TRASH>>" & tab & ((itemIndex - 1) as text) & tab & "ERR" & tab & (errorNumber as text) & tab & errorMessage & linefeed
		end try
	end repeat
end tell
return reportLines
)";

/// The rest of the line after the first `count` tabs.
QByteArray afterTabs(const QByteArray& line, int count) {
    qsizetype at = -1;
    for (int i = 0; i < count; ++i) {
        at = line.indexOf('\t', at + 1);
        if (at < 0)
            return {};
    }
    return line.sliced(at + 1);
}

FinderTrashOutcome outcomeOf(const QByteArray& line, const QList<QByteArray>& parts) {
    if (parts.value(2) == "OK") {
        QByteArray path = afterTabs(line, 3);
        while (path.size() > 1 && path.endsWith('/'))
            path.chop(1);
        if (path.isEmpty())
            return {.message = Texts::tr(notMoved)};
        return {.trashedURL = path};
    }
    if (parts.value(2) != "ERR")
        return {.message = Texts::tr(notReported)};
    bool isNumber = false;
    const int number = parts.value(3).toInt(&isNumber);
    return {.message = finderTrashMessage(isNumber ? std::optional(number) : std::nullopt)};
}

QList<FinderTrashOutcome> allFailed(qsizetype count, const QString& message) {
    return QList<FinderTrashOutcome>(count, FinderTrashOutcome{.message = message});
}

bool hasLineBreak(const QByteArray& path) { return path.contains('\n') || path.contains('\r'); }

} // namespace

std::optional<QByteArray> finderTrashScript(const QList<QByteArray>& hostPaths) {
    QByteArray script = "set sourcePaths to {";
    for (qsizetype i = 0; i < hostPaths.size(); ++i) {
        if (!hostPaths[i].isValidUtf8() || hostPaths[i].isEmpty() || hostPaths[i].contains('\0'))
            return std::nullopt;
        script += (i > 0 ? ", " : "") + appleScriptLiteral(hostPaths[i]);
    }
    return script + "}\n" + body;
}

QString finderTrashMessage(std::optional<int> number) {
    switch (number.value_or(0)) {
    case 0:
        return number ? Texts::tr("Finder could not move the item to the Trash (error 0).")
                      : Texts::tr("Finder could not move the item to the Trash.");
    case -1743:
        return Texts::tr("Finder automation is not allowed. Enable Tessellar under System Settings > "
                         "Privacy & Security > Automation, then try again.");
    case -128:
        return Texts::tr("Finder trash approval was canceled.");
    default:
        return Texts::tr("Finder could not move the item to the Trash (error %1).").arg(*number);
    }
}

QList<FinderTrashOutcome> finderTrashOutcomes(const QByteArray& report, qsizetype count) {
    QList<std::optional<FinderTrashOutcome>> found(count);
    for (const QByteArray& line : report.split('\n')) {
        const QList<QByteArray> parts = line.split('\t');
        if (parts.first() != marker)
            continue;
        bool isNumber = false;
        const int index = parts.value(1).toInt(&isNumber);
        if (isNumber && index >= 0 && index < count && !found[index])
            found[index] = outcomeOf(line, parts);
    }
    QList<FinderTrashOutcome> outcomes;
    for (const auto& outcome : std::as_const(found))
        outcomes.append(outcome.value_or(FinderTrashOutcome{.message = Texts::tr(notReported)}));
    return outcomes;
}

QList<FinderTrashOutcome> FinderTrash::run(const QList<QByteArray>& hostPaths, std::stop_token stop) {
    const auto script = finderTrashScript(hostPaths);
    if (!script)
        return allFailed(hostPaths.size(), Texts::tr(notPrepared));
    const auto report = _interpreter.run(*script, stop);
    if (report)
        return finderTrashOutcomes(*report, hostPaths.size());
    using Kind = AppleScriptInterpreter::Error::Kind;
    switch (report.error().kind) {
    case Kind::notCompiled:
        return allFailed(hostPaths.size(), Texts::tr(notPrepared));
    case Kind::cancelled:
        return allFailed(hostPaths.size(),
                         stop.stop_requested() ? Texts::tr(stoppedRemoval) : Texts::tr(notInTime));
    case Kind::missing:
    case Kind::failed:
        break;
    }
    return allFailed(hostPaths.size(), finderTrashMessage(report.error().number));
}

QList<TrashResult> FinderTrash::moveToTrash(const QStringList& paths, std::stop_token stop) {
    QList<TrashResult> results;
    for (qsizetype at = 0; at < paths.size();) {
        QList<QByteArray> run;
        // A path with a line break could forge another's result, so it gets a script of its own. So
        // does one that cannot be written in a script: it fails alone.
        while (at < paths.size() && run.size() < pathsPerRun) {
            const QByteArray path = _files.hostPath(paths[at]);
            const bool goesAlone = hasLineBreak(path) || !path.isValidUtf8() || path.isEmpty();
            if (goesAlone && !run.isEmpty())
                break;
            run.append(path);
            ++at;
            if (goesAlone)
                break;
        }
        for (const FinderTrashOutcome& outcome : this->run(run, stop)) {
            const auto trashed =
                outcome.trashedURL ? _files.pathFromHost(*outcome.trashedURL) : std::nullopt;
            results.append(
                {trashed, outcome.trashedURL && !trashed ? Texts::tr(notReported) : outcome.message});
        }
    }
    return results;
}

} // namespace tessellar
