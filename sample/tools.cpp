#include "sample/tools.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;

namespace {

/// What every script begins with. `up` leads from the script's folder to the root. Nothing is taken
/// from the environment; `own PATH` sets `mac` to the Mac's path of a host path.
QByteArray script(const QByteArray& up, const char* body) {
    return R"(#!/bin/sh
# Stands in for a tool of the Mac on a sample machine.
PATH=/usr/bin:/bin:/usr/sbin:/sbin LC_ALL=C
export PATH LC_ALL
root=$(cd -- "$(dirname -- "$0")/)" +
           up + R"(" && pwd) || exit 70
real=$(cd -- "$root" && pwd -P)
data=$root/private/var/tessellar-sample
own() {
    case $1 in
    "$root"/*) mac=${1#"$root"} ;;
    "$real"/*) mac=${1#"$real"} ;;
    *) mac=$1 ;;
    esac
}
)" + body;
}

constexpr auto codesign = R"sh(
display= verbose= entitlements= path=
for argument do
    case $argument in
    --display | -d*) display=1 ;;
    --verbose* | -v?*) verbose=1 ;;
    --entitlements) entitlements=1 ;;
    -*) ;;
    *) path=${argument%/} ;;
    esac
done
if ! [ -e "$path" ]; then
    printf '%s: No such file or directory\n' "$path" >&2
    exit 1
fi
own "$path"
# Code inside a bundle is signed with it.
while [ -n "$mac" ] && ! [ -f "$data/answers$mac/codesign" ]; do
    case $mac in
    *.app) mac= ;;
    *) mac=${mac%/*} ;;
    esac
done
if [ -z "$mac" ]; then
    printf '%s: code object is not signed at all\n' "$path" >&2
    exit 1
fi
if [ -n "$display" ]; then
    {
        IFS= read -r first
        printf 'Executable=%s%s\n' "$root" "${first#Executable=}"
        cat
    } <"$data/answers$mac/codesign" >&2
    if [ -n "$entitlements" ] && [ -f "$data/answers$mac/entitlements" ]; then
        cat "$data/answers$mac/entitlements"
    fi
elif [ -n "$verbose" ]; then
    printf '%s: valid on disk\n%s: satisfies its Designated Requirement\n' "$path" "$path" >&2
fi
)sh";

constexpr auto lipo = R"sh(
if [ "$1" != -archs ] || [ $# -ne 2 ]; then
    echo "fatal error: lipo: one of -archs and one input file must be given" >&2
    exit 1
fi
own "$2"
if ! [ -f "$data/answers$mac/lipo" ]; then
    printf "fatal error: lipo: can't figure out the architecture type of: %s\n" "$2" >&2
    exit 1
fi
cat "$data/answers$mac/lipo"
)sh";

constexpr auto mdls = R"sh(
raw= name= path=
while [ $# -gt 0 ]; do
    case $1 in
    -raw) raw=1 ;;
    -name) name=$2 && shift ;;
    *) path=${1%/} ;;
    esac
    shift
done
if ! [ -e "$path" ]; then
    printf '%s: could not find %s.\n' "$path" "$path"
    exit 1
fi
own "$path"
value='(null)'
if [ -f "$data/answers$mac/mdls" ]; then
    while IFS='=' read -r key found; do
        [ "$key" = "$name" ] && value=$found
    done <"$data/answers$mac/mdls"
fi
if [ -n "$raw" ]; then
    printf '%s' "$value"
else
    printf '%s = %s\n' "$name" "$value"
fi
)sh";

constexpr auto getconf = R"sh(
case $1 in
DARWIN_USER_DIR | DARWIN_USER_TEMP_DIR | DARWIN_USER_CACHE_DIR) cat "$data/getconf/$1" ;;
*)
    printf "getconf: no such configuration parameter \`%s'\n" "$1" >&2
    exit 1
    ;;
esac
)sh";

constexpr auto open = R"sh(
line=
for argument do
    case $argument in
    /*)
        if ! [ -e "$argument" ]; then
            printf 'The file %s does not exist.\n' "$argument" >&2
            exit 1
        fi
        ;;
    esac
    own "$argument"
    line="$line${line:+	}$mac"
done
printf '%s\n' "$line" >>"$data/opened.log"
)sh";

// The list of paths is read as the language has it: quoted texts with backslash escapes. Each is handed
// on as one line in the escapes of printf, so that a line break in a name stays in the name.
constexpr auto osascript = R"sh(
text=
given=
while [ $# -gt 0 ]; do
    case $1 in
    -e)
        text=$text$2'
'
        given=1
        shift
        ;;
    -l | -s) shift ;;
    -) ;;
    *)
        text=$(cat -- "$1")
        given=1
        ;;
    esac
    shift
done
[ -n "$given" ] || text=$(cat)

if [ -f "$data/finder/error" ]; then
    cat "$data/finder/error" >&2
    exit 1
fi
case $text in
*'set sourcePaths to {'*'tell application "Finder"'*) ;;
*' to quit'*)
    asked=$(printf '%s\n' "$text" | sed -n 's/.*tell application \(id \)\{0,1\}"\(.*\)" to quit.*/\2/p')
    printf '%s\n' "$asked" >>"$data/quit.log"
    [ -f "$data/running" ] || exit 0
    own "$asked"
    while IFS='	' read -r identifier executable stays; do
        case $executable in
        "$mac"/*) identifier=$asked ;;
        esac
        [ "$identifier" = "$asked" ] && [ -z "$stays" ] && continue
        printf '%s\t%s%s\n' "$identifier" "$executable" "${stays:+	$stays}"
    done <"$data/running" >"$data/running.new"
    mv -- "$data/running.new" "$data/running"
    exit 0
    ;;
*)
    echo '0:10: syntax error: Expected end of line but found identifier. (-2741)' >&2
    exit 1
    ;;
esac

home=
case $HOME in
"$root"/Users/* | "$real"/Users/*) home=$HOME ;;
*)
    for folder in "$root"/Users/*/; do
        case $folder in
        */Shared/) ;;
        *)
            home=${folder%/}
            break
            ;;
        esac
    done
    ;;
esac
mkdir -p -- "$home/.Trash" || exit 1

refusal() { # sets `number` where the Finder will not take the path
    number=
    [ -f "$data/finder/refused" ] || return 0
    while IFS='	' read -r found refused; do
        [ "$refused" = "$1" ] && number=$found
    done <"$data/finder/refused"
}

marker='<<QZ-FINDER-TRASH>>'
printf '%s' "$text" | awk '
    { text = text $0 "\n" }
    END {
        i = index(text, "set sourcePaths to {") + 20
        for (end = length(text); i <= end; i++) {
            c = substr(text, i, 1)
            if (c == "}")
                exit
            if (c != "\"")
                continue
            item = ""
            for (i++; i <= end && (c = substr(text, i, 1)) != "\""; i++) {
                if (c == "\n")
                    c = "\\n"
                if (c == "\\") {
                    c = substr(text, ++i, 1)
                    if (c == "n" || c == "r" || c == "t" || c == "\\")
                        c = "\\" c
                }
                item = item c
            }
            print item
        }
    }' | {
    index=0
    while IFS= read -r line; do
        path=$(printf '%b.' "$line")
        path=${path%.}
        path=${path%/}
        own "$path"
        refusal "$mac"
        if [ "$mac" = "$path" ] || { ! [ -e "$path" ] && ! [ -L "$path" ]; }; then
            printf '%s\t%d\tERR\t-43\tThe file wasn’t found.\n' "$marker" "$index"
        elif [ -n "$number" ]; then
            printf '%s\t%d\tERR\t%s\tThe operation could not be completed.\n' "$marker" "$index" "$number"
        else
            name=${path##*/}
            stem=$name suffix=
            case $name in
            ?*.*) stem=${name%.*} suffix=.${name##*.} ;;
            esac
            target=$home/.Trash/$name
            count=2
            while [ -e "$target" ] || [ -L "$target" ]; do
                target="$home/.Trash/$stem $count$suffix"
                count=$((count + 1))
            done
            if mv -- "$path" "$target" 2>/dev/null; then
                [ -d "$target" ] && ! [ -L "$target" ] && target=$target/
                printf '%s\t%d\tOK\t%s\n' "$marker" "$index" "$target"
            else
                printf '%s\t%d\tERR\t-10004\tA privilege violation occurred.\n' "$marker" "$index"
            fi
        fi
        index=$((index + 1))
    done
    # The interpreter ends what a script returns with a line break of its own.
    echo
}
)sh";

constexpr auto ps = R"sh(
echo /sbin/launchd
[ -f "$data/running" ] || exit 0
while IFS='	' read -r identifier executable stays; do
    printf '%s%s\n' "$root" "$executable"
done <"$data/running"
)sh";

constexpr auto bringUpdate = R"sh(
bring() { # the new Info.plist of an update to its place
    IFS= read -r destination <"$1/destination"
    cp -- "$1/Info.plist" "$root$destination.new" && mv -- "$root$destination.new" "$root$destination"
}
)sh";

constexpr auto brew = R"sh(
if [ -f "$data/brew/error" ]; then
    cat "$data/brew/error" >&2
    exit 1
fi
list() {
    printf '{"formulae":[],"casks":['
    separator=
    for file in "$data/brew/$1"/*.json; do
        [ -f "$file" ] || continue
        printf '%s' "$separator"
        cat "$file"
        separator=,
    done
    printf ']}\n'
}
case "$*" in
'outdated --cask --json=v2') list outdated ;;
'info --json=v2 --cask --installed') list info ;;
'upgrade --cask '*)
    if ! [ -f "$data/brew/info/$3.json" ]; then
        printf "Error: Cask '%s' is not installed.\n" "$3" >&2
        exit 1
    elif ! [ -f "$data/brew/outdated/$3.json" ]; then
        printf 'Warning: Not upgrading %s, the latest version is already installed\n' "$3" >&2
    else
        printf '==> Upgrading 1 outdated package:\n%s\n' "$3"
        [ -d "$data/brew/updates/$3" ] && bring "$data/brew/updates/$3"
        rm -f -- "$data/brew/outdated/$3.json"
        printf '==> Purging files for version of Cask %s\n' "$3"
    fi
    ;;
--prefix) echo /opt/homebrew ;;
--version) echo 'Homebrew 4.6.7' ;;
*)
    printf 'Error: Unknown command: brew %s\n' "$*" >&2
    exit 1
    ;;
esac
)sh";

constexpr auto msupdate = R"sh(
applied=
wanted=
case "$*" in
--list) for update in "$data/mau"/*/; do [ -d "$update" ] && basename -- "$update"; done ;;
'--install --apps '*)
    wanted=$3
    if [ -d "$data/mau/$wanted" ]; then
        bring "$data/mau/$wanted" && rm -r -- "$data/mau/$wanted" && applied=1
    fi
    if [ -n "$applied" ]; then
        echo 'Updates applied'
    else
        echo 'No updates applied'
    fi
    ;;
*)
    echo 'Usage: msupdate [--list] [--install [--apps codes] [--wait seconds]]'
    exit 1
    ;;
esac
)sh";

void addUpdate(MacBuilder& mac, const QString& folder, const PendingUpdate& update) {
    mac.addFile(folder + u"/destination"_s, update.infoPath.toUtf8() + '\n');
    mac.addFile(folder + u"/Info.plist"_s, update.infoBytes);
}

QByteArray compact(const QJsonObject& object) {
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

} // namespace

void addTools(MacBuilder& mac) {
    for (const auto& [name, body] : {std::pair{u"codesign"_s, codesign},
                                     {u"lipo"_s, lipo},
                                     {u"mdls"_s, mdls},
                                     {u"getconf"_s, getconf},
                                     {u"open"_s, open},
                                     {u"osascript"_s, osascript}})
        mac.addExecutable(u"/usr/bin/"_s + name, script("../..", body));
    mac.addExecutable(u"/bin/ps"_s, script("..", ps));
    const QString folder = u"/var/folders/zz/sample5x7hq0000gn/"_s;
    for (const auto& [name, part] :
         {std::pair{u"USER"_s, u"0/"_s}, {u"USER_TEMP"_s, u"T/"_s}, {u"USER_CACHE"_s, u"C/"_s}}) {
        mac.addFile(MacBuilder::toolData() + u"/getconf/DARWIN_"_s + name + u"_DIR"_s,
                    (folder + part).toUtf8() + '\n');
        mac.addDirectory(u"/private"_s + folder + part);
    }
    mac.addDirectory(MacBuilder::toolData() + u"/finder"_s);
}

void addHomebrew(MacBuilder& mac, const QList<Cask>& casks) {
    mac.addExecutable(u"/opt/homebrew/bin/brew"_s, script("../../..", bringUpdate + QByteArray(brew)));
    const QString data = MacBuilder::toolData() + u"/brew/"_s;
    mac.addDirectory(data + u"info"_s);
    mac.addDirectory(data + u"outdated"_s);
    for (const Cask& cask : casks) {
        const QString tap = cask.tap.isEmpty() ? u"homebrew/cask"_s : cask.tap;
        mac.addFile(
            data + u"info/"_s + cask.token + u".json"_s,
            compact(
                {{u"token"_s, cask.token},
                 {u"full_token"_s, cask.tap.isEmpty() ? cask.token : cask.tap + u'/' + cask.token},
                 {u"tap"_s, tap},
                 {u"version"_s, cask.version},
                 {u"installed"_s, cask.installedVersion},
                 {u"outdated"_s, bool(cask.update)},
                 {u"auto_updates"_s, cask.autoUpdates ? QJsonValue(*cask.autoUpdates) : QJsonValue()},
                 {u"artifacts"_s, cask.artifacts}}));
        if (!cask.update)
            continue;
        const QJsonValue installed = cask.installedVersionsAsText
                                         ? QJsonValue(cask.installedVersion)
                                         : QJsonValue(QJsonArray{cask.installedVersion});
        mac.addFile(data + u"outdated/"_s + cask.token + u".json"_s,
                    compact({{u"name"_s, cask.token},
                             {u"installed_versions"_s, installed},
                             {u"current_version"_s, cask.update->version},
                             {u"pinned"_s, false},
                             {u"pinned_version"_s, QJsonValue()}}));
        addUpdate(mac, data + u"updates/"_s + cask.token, *cask.update);
    }
}

void addMicrosoftUpdater(MacBuilder& mac, const QList<PendingUpdate>& updates) {
    const QString bundle =
        mac.addApplication({.name = u"Microsoft AutoUpdate"_s,
                            .folder = u"/Library/Application Support/Microsoft/MAU2.0"_s,
                            .identifier = u"com.microsoft.autoupdate2"_s,
                            .version = u"4.80"_s});
    mac.addExecutable(bundle + u"/Contents/MacOS/msupdate"_s,
                      script("../../../../../../..", bringUpdate + QByteArray(msupdate)));
    for (const PendingUpdate& update : updates)
        addUpdate(mac, MacBuilder::toolData() + u"/mau/"_s + update.name, update);
}

} // namespace tessellar::sample
