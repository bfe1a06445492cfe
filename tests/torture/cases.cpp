#include "torture/cases.h"

#include <algorithm>
#include <cerrno>
#include <random>

namespace tessellar::torture {

using Kind = SystemCall::Kind;

const QList<Command>& commands() {
    using enum Trait;
    static const QList<Command> all{
        {"list", "list"},
        {"list-windowed", "--mode windowed list"},
        {"rename", "rename org.example.hazel Witch"},
        {"rename-windowed", "--mode windowed rename org.example.hazel Witch"},
        {"revert-name", "revert-name org.example.hazel"},
        {"symbol", "symbol {folder} leaf"},
        {"hide", "hide org.example.fir"},
        {"unhide", "unhide org.example.elm"},
        {"move", "move org.example.ash --to 0:0"},
        {"group", "group org.example.maple --with org.example.iris"},
        {"ungroup", "ungroup {folder}"},
        {"sort", "sort"},
        {"sort-page", "sort 0"},
        {"alias-create", "alias create org.example.cedar --to 0"},
        {"alias-remove", "alias remove org.example.nettle"},
        {"reset", "reset", isOfAllSeen | keepsCopy},
        {"arrange", "arrange by-category", isOfAllSeen | keepsCopy},
        {"arrangements-save", "arrangements save Second"},
        {"arrangements-rename", "arrangements rename {arrangement} Other"},
        {"arrangements-replace", "arrangements replace {arrangement}"},
        {"arrangements-restore", "arrangements restore {arrangement}", isOfAllSeen | keepsCopy},
        {"arrangements-delete", "arrangements delete {arrangement}"},
        {"backups-restore", "backups restore {backup}", isOfAllSeen | keepsCopy},
        {"places-forget", "places forget"},
        {"smart-folders-add", "smart-folders add --template games"},
        {"smart-folders-replace",
         "smart-folders replace {smartFolder} {root}/Users/ada/definition.json"},
        {"smart-folders-remove", "smart-folders remove {smartFolder}"},
        {"smart-folders-place", "smart-folders place {unplaced}"},
        {"smart-folders-unplace", "smart-folders unplace {smartFolder}"},
        {"settings-set", "settings set gridColumns 9"},
        {"icon-set", "icon set org.example.ash /Users/ada/icon.icns"},
        {"icon-remove", "icon remove org.example.oak"},
        {"import-launchpad", "import-launchpad", keepsCopy},
        {"open", "open org.example.ash"},
        {"cleanup-remove", "cleanup remove org.example.cedar --yes", isBroughtBack},
        {"cleanup-restore", "cleanup restore", isBroughtBack},
        {"updates-skip", "updates skip org.example.maple"},
        {"updates-unskip", "updates unskip org.example.gorse"},
        {"batch", "batch {root}/Users/ada/edits"},
        {"batch-pasted", "batch {root}/Users/ada/pasted"},
        {"batch-undone", "batch {root}/Users/ada/undone"},
    };
    return all;
}

const QByteArrayList& independentCommands() {
    static const QByteArrayList all{
        "rename org.example.ash 'Ash of mine'",
        "rename org.example.gorse 'Gorse of mine'",
        "rename org.example.nettle 'Nettle of mine'",
        "hide org.example.fir",
        "hide org.example.maple",
        "unhide org.example.elm",
        "symbol {folder} leaf",
        "settings set gridColumns 9",
        "--mode windowed rename org.example.ash 'Ash of the window'",
        "icon remove org.example.oak",
    };
    return all;
}

const Command* commandNamed(const QByteArray& name) {
    const auto found = std::ranges::find(commands(), name, &Command::name);
    return found == commands().end() ? nullptr : &*found;
}

const QMap<QByteArray, int>& errors() {
    static const QMap<QByteArray, int> all{{"EIO", EIO},       {"ENOSPC", ENOSPC}, {"EDQUOT", EDQUOT},
                                           {"EROFS", EROFS},   {"EINTR", EINTR},   {"EACCES", EACCES},
                                           {"ESTALE", ESTALE}, {"EMFILE", EMFILE}, {"ENOLCK", ENOLCK},
                                           {"EAGAIN", EAGAIN}};
    return all;
}

namespace {

/// What can befall a call in earnest.
QByteArrayList fatesOf(const Site& site) {
    switch (site.kind) {
    case Kind::changes:
        return {"EIO", "ENOSPC", "EDQUOT", "EROFS", "EINTR", "EIO+", "ENOSPC+", "EROFS+"};
    case Kind::makesThread:
        return {"EAGAIN", "EAGAIN+"};
    case Kind::makesDescriptor:
        return {"EMFILE", "EMFILE+"};
    case Kind::serves:
        return {"EMFILE"};
    case Kind::reads:
        break;
    }
    if (site.call == "close")
        return {"EIO", "EINTR", "ENOSPC"};
    if (site.call == "flock")
        return {"EIO", "EINTR", "ENOLCK", "ENOLCK+"};
    if (site.call.startsWith("open") || site.call == "read")
        return {"EIO", "EIO+", "EINTR", "EACCES", "ESTALE", "EMFILE"};
    return {"EIO", "EIO+", "EACCES+", "ESTALE"};
}

} // namespace

void CaseList::addCalls(const QByteArray& row, const Command& command, const QList<Site>& sites) {
    const QByteArray killed = row == "call" ? QByteArray("kill") : row;
    for (const Site& site : sites) {
        const QByteArray what = ':' + command.name + ':' + site.name() + ':';
        const QByteArray bucket = ' ' + command.name + (site.kind == Kind::reads ? " r" : " w");
        for (const QByteArray& fate : fatesOf(site))
            add(row + bucket, row + what + fate);
        if (site.kind == Kind::changes)
            for (const char* when : {"before", "after"})
                add(killed + bucket, killed + what + when);
    }
}

void CaseList::addDamage(const QByteArray& file, qsizetype size) {
    for (qsizetype at = 0; at < size; ++at) {
        add("cut " + file, "cut:" + file + ':' + QByteArray::number(at));
        for (qsizetype bit = at * 8; bit < at * 8 + 8; ++bit)
            add("bits " + file, "bits:" + file + ':' + QByteArray::number(bit));
    }
}

void CaseList::addTogether() {
    for (int number = 0; number < 200; ++number)
        for (const char* served : {"alone", "served"})
            add(QByteArray("together ") + served,
                QByteArray("together:") + served + ':' + QByteArray::number(number));
}

QList<Case> CaseList::drawn() const {
    std::mt19937 random(_seed);
    QList<QList<Case>> buckets = _buckets.values();
    for (QList<Case>& bucket : buckets)
        std::ranges::shuffle(bucket, random);
    std::ranges::shuffle(buckets, random);
    QList<Case> all;
    for (qsizetype round = 0, before = -1; all.size() != before; ++round) {
        before = all.size();
        for (const QList<Case>& bucket : std::as_const(buckets))
            if (round < bucket.size())
                all.append(bucket[round]);
    }
    return all;
}

} // namespace tessellar::torture
