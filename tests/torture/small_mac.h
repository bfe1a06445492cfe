#pragma once

#include "tests/platform/disk_folder.h"
#include "torture/state.h"
#include "torture/system_calls.h"

#include <sys/stat.h>

#include <map>

namespace tessellar::torture {

/// What the laws have to know of a command.
enum class Trait {
    isBroughtBack = 1, ///< a later command brings back what it moves to the Trash
    isOfAllSeen = 2,   ///< it arranges anew what its scan has seen
    keepsCopy = 4,     ///< of the arrangement, which another takes the place of
};
Q_DECLARE_FLAGS(Traits, Trait)
Q_DECLARE_OPERATORS_FOR_FLAGS(Traits)

/// A command of the case table. In its words, "{NAME}" stands for an identifier that the Mac knows.
struct Command {
    QByteArray name;
    QByteArray line;
    Traits traits = {};

    bool has(Trait trait) const { return traits.testFlag(trait); }
};

/// A small Mac in memory, which is put back as it was after each case.
class SmallMac {
public:
    /// Builds it, with an arrangement that has something for each command to work on. Throws where
    /// that fails.
    SmallMac();

    /// A program that carries out one command, a line of shell words.
    Programs::Main tessellarctl(const QByteArray& line) const;
    /// A launcher without a window, which carries out what others ask for until it is told to end.
    Programs::Main launcher() const;
    Ending run(const QByteArray& line);
    /// Brings back all that commands have moved to the Trash.
    void bringAllBack();
    /// The file below the root that a command reads its commands from; empty for others.
    static QByteArray batchFile(const Command& command);

    void restore();
    State state() const;
    /// All files below the root as they are, by path.
    QMap<QByteArray, QByteArray> files() const;
    /// As it was built.
    const QMap<QByteArray, QByteArray>& builtFiles() const { return _builtFiles; }
    void write(const QByteArray& path, const QByteArray& bytes) const;

    /// The path below the root, without stamps; nothing for other paths.
    std::optional<QByteArray> siteOf(const QByteArray& hostPath) const;

    static const QByteArray applicationFolder;
    static const QByteArray settingsFile;

private:
    struct Entry {
        struct stat status {};
        QByteArray bytes; ///< or where a link leads
    };
    using Tree = std::map<QByteArray, Entry>;

    void build();
    void arrange();
    Tree walk() const;
    void put(const QByteArray& path, const Entry& entry) const;
    void moveBack() const;
    bool isThere(const QByteArray& path) const;
    std::string host(const QByteArray& path) const { return (_root + '/' + path).toStdString(); }

    test::MemoryFolder _folder;
    QByteArray _root = QByteArray::fromStdString(std::filesystem::canonical(_folder.path()));
    QMap<QByteArray, QByteArray> _words; ///< by the names that stand for them
    Tree _built;
    QMap<QByteArray, QByteArray> _builtFiles;
    QSet<QByteArray> _knownIdentifiers;
};

} // namespace tessellar::torture
