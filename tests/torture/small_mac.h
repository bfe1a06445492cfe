#pragma once

#include "torture/state.h"
#include "torture/system_calls.h"

#include <QStringList>

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
    const char* name;
    const char* line;
    Traits traits = {};

    bool has(Trait trait) const { return traits.testFlag(trait); }
};

/// A small Mac in memory, which is put back as it was after each case.
class SmallMac {
public:
    /// Builds it, with an arrangement that has something for each command to work on. Nothing where
    /// that fails.
    explicit SmallMac(const QByteArray& folder);
    ~SmallMac();
    SmallMac(const SmallMac&) = delete;
    SmallMac& operator=(const SmallMac&) = delete;

    const std::optional<QByteArray>& failure() const { return _failure; }
    const QByteArray& root() const { return _root; }

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
    /// The path of the first built file that this is without stamps.
    QByteArray builtFile(const QByteArray& name) const;
    void write(const QByteArray& path, const QByteArray& bytes) const;

    /// The path below the root, without stamps; nothing for other paths.
    std::optional<QByteArray> siteOf(const QByteArray& hostPath) const;

    static const QByteArray applicationFolder;
    static const QByteArray settingsFile;

private:
    struct Entry {
        mode_t mode = 0;
        QByteArray bytes; ///< or where a link leads
        timespec modified{};
        timespec changed{};
        ino_t inode = 0;
    };
    using Tree = QMap<QByteArray, Entry>;

    void build();
    void arrange();
    Tree walk() const;
    void put(const QByteArray& path, const Entry& entry) const;
    bool moveBack(const Tree& now) const;

    QByteArray _root;
    bool _hasDisk = false;
    std::optional<QByteArray> _failure;
    QMap<QByteArray, QByteArray> _words; ///< by the names that stand for them
    Tree _built;
    QMap<QByteArray, QByteArray> _builtFiles;
    QSet<QByteArray> _knownIdentifiers;
};

} // namespace tessellar::torture
