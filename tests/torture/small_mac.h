#pragma once

#include "torture/system_calls.h"

#include <QMap>
#include <QSet>
#include <QStringList>

namespace tessellar::torture {

/// What the launcher keeps of the user's, and where things lie: the contents of its durable files, and
/// the names of all others. By paths below the root; identifiers and stamps that are new are numbered,
/// so that two runs of one command come to the same.
using State = QMap<QByteArray, QByteArray>;

/// One difference between two states, for people.
QByteArray difference(const State& expected, const State& actual);

/// A command of the case table. In its words, "{NAME}" stands for an identifier that the Mac knows.
struct Command {
    const char* name;
    const char* line;
};

/// A small Mac on a disk of its own in memory, which is put back as it was after each case.
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
    /// Whether the disk is its own: then it can be made small.
    bool hasDisk() const { return _hasDisk; }
    /// Leaves this many bytes free on its disk, or all that it had.
    void leaveFree(std::optional<qint64> bytes);

    /// A program that carries out one command, or a line of shell words.
    /// A launcher without a window, which carries out what others ask for until it is told to end.
    Programs::Main launcher() const;
    Programs::Main tessellarctl(const QByteArray& line) const;
    Ending run(const QByteArray& line);

    void restore();
    State state() const;
    /// All files below the root as they are, by path.
    QMap<QByteArray, QByteArray> files() const;
    /// As it was built.
    const QMap<QByteArray, QByteArray>& builtFiles() const { return _builtFiles; }
    void write(const QByteArray& path, const QByteArray& bytes) const;

    /// The path below the root with what differs from run to run replaced; nothing for other paths.
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

    QByteArray _root;
    bool _hasDisk = false;
    std::optional<QByteArray> _failure;
    QMap<QByteArray, QByteArray> _words; ///< by the names that stand for them
    Tree _built;
    QMap<QByteArray, QByteArray> _builtFiles;
    QSet<QByteArray> _knownIdentifiers;
};

} // namespace tessellar::torture
