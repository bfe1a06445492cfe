#include "sample/demonstration_mac.h"

#include "sample/catalog.h"
#include "sample/demonstration_updates.h"
#include "sample/launchpad_database.h"
#include "sample/leftovers.h"
#include "sample/picture.h"
#include "sample/tools.h"

#include <array>
#include <atomic>
#include <thread>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;

namespace {

const QDateTime& today() {
    static const QDateTime date(QDate(2026, 5, 1), QTime(9, 0), Qt::UTC);
    return date;
}

/// Names and pictures for more applications than the catalog has.
CatalogEntry madeUp(int number) {
    static constexpr std::array kinds{Kind::developer, Kind::sparkle, Kind::store};
    static const QList<QByteArray> glyphs = pictureNames();
    static constexpr std::array<std::pair<QRgb, QRgb>, 7> tones{{{0x6cc3ff, 0x1d7bf2},
                                                                 {0xffa94d, 0xf0642a},
                                                                 {0x6ee08a, 0x1f9e55},
                                                                 {0xb18cff, 0x6633d6},
                                                                 {0xff8fa8, 0xe23a66},
                                                                 {0x525a6b, 0x20242e},
                                                                 {0x5fe0cf, 0x0f8f92}}};
    const auto& [top, bottom] = tones[std::size_t(number) % tones.size()];
    return {"",
            kinds[std::size_t(number) % kinds.size()],
            number % int(vendors().size()),
            "",
            "utilities",
            IconDesign{.glyph = glyphs[number % glyphs.size()].constData(),
                       .top = top,
                       .bottom = bottom,
                       .backdrop = Backdrop(number % 10)}};
}

QString madeUpName(int number) {
    static const QStringList first{u"Amber"_s,  u"Birch"_s,  u"Cinder"_s, u"Dapple"_s, u"Elder"_s,
                                   u"Fable"_s,  u"Gully"_s,  u"Hazel"_s,  u"Indigo"_s, u"Juniper"_s,
                                   u"Kelp"_s,   u"Linden"_s, u"Mallow"_s, u"Nettle"_s, u"Oaken"_s,
                                   u"Pewter"_s, u"Quartz"_s, u"Russet"_s, u"Sorrel"_s};
    static const QStringList second{u"Board"_s, u"Craft"_s, u"Desk"_s, u"Field"_s, u"Gate"_s,
                                    u"House"_s, u"Kit"_s,   u"Lane"_s, u"Mark"_s,  u"Notes"_s,
                                    u"Path"_s,  u"Quest"_s, u"Room"_s, u"Scope"_s, u"Trail"_s,
                                    u"View"_s,  u"Works"_s};
    const int pairs = int(first.size() * second.size());
    const QString name = first[number % first.size()] + u' ' + second[number % second.size()];
    return number < pairs ? name : name + u' ' + QString::number((number / pairs) + 1);
}

struct Planned {
    CatalogEntry entry;
    QString name;
    QString identifier;
    QByteArray icon;
};

QList<Planned> planned(int count) {
    QList<Planned> plan;
    const int known = int(catalog().size());
    for (int i = 0; i < count; ++i) {
        // Fewer than there are: an even choice, so that every kind is among them.
        const bool isKnown = count <= known || i < known;
        const CatalogEntry entry =
            isKnown ? catalog()[std::size_t(count < known ? i * known / count : i)] : madeUp(i - known);
        const QString name = isKnown ? QString::fromUtf8(entry.name) : madeUpName(i - known);
        const QString own =
            isKnown ? QString::fromLatin1(entry.identifier) : name.toLower().remove(u' ');
        const bool whole = entry.vendor < 0 || own.startsWith(u"com."_s);
        plan.append(
            {entry,
             name,
             whole ? own
                   : QString::fromLatin1(vendors()[std::size_t(entry.vendor)].prefix) + u'.' + own,
             {}});
    }
    return plan;
}

IcnsForm formFor(const Planned& application, int number) {
    if (application.name == u"Rookery")
        return IcnsForm::runLength;
    return number % 17 == 5 ? IcnsForm::large : number % 6 == 3 ? IcnsForm::older : IcnsForm::modern;
}

/// The icon of an iPhone's bundle: without the margin that the Mac's own have.
QByteArray phoneIcon(const IconDesign& design) {
    const QImage icon = drawIcon(design, 512);
    return pngBytes(
        icon.copy(50, 48, 412, 412).scaled(120, 120, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
}

void drawIcons(QList<Planned>& plan) {
    // Of thousands, those beyond what anybody tells apart share icons: drawing takes nearly all the
    // time.
    static constexpr int madeUpIcons = 210;
    std::atomic<int> next = 0;
    Planned* const begin = plan.data();
    const int count = std::min(int(plan.size()), int(catalog().size()) + madeUpIcons);
    const auto work = [&] {
        for (int i = next++; i < count; i = next++) {
            Planned& application = begin[i];
            application.icon = application.entry.kind == Kind::wrapped
                                   ? phoneIcon(application.entry.icon)
                                   : icnsBytes(application.entry.icon, formFor(application, i));
        }
    };
    {
        std::vector<std::jthread> threads;
        for (unsigned i = 0; i < std::max(1u, std::thread::hardware_concurrency()); ++i)
            threads.emplace_back(work);
    }
    for (int i = count; i < int(plan.size()); ++i)
        begin[i].icon = begin[i - madeUpIcons].icon;
}

QStringList privacyKeysFor(const QString& category) {
    static const QMap<QString, QStringList> keys{
        {u"business"_s, {u"NSCameraUsageDescription"_s, u"NSMicrophoneUsageDescription"_s}},
        {u"photography"_s, {u"NSCameraUsageDescription"_s, u"NSPhotoLibraryUsageDescription"_s}},
        {u"music"_s, {u"NSMicrophoneUsageDescription"_s, u"NSAppleMusicUsageDescription"_s}},
        {u"navigation"_s, {u"NSLocationWhenInUseUsageDescription"_s}},
        {u"weather"_s, {u"NSLocationUsageDescription"_s}},
        {u"productivity"_s,
         {u"NSCalendarsFullAccessUsageDescription"_s, u"NSAppleEventsUsageDescription"_s}},
        {u"social-networking"_s, {u"NSContactsUsageDescription"_s, u"NSCameraUsageDescription"_s}},
        {u"utilities"_s, {u"NSBluetoothAlwaysUsageDescription"_s, u"NSLocalNetworkUsageDescription"_s}},
    };
    return keys.value(category);
}

QString folderFor(const Planned& application) {
    static const QMap<QString, QString> own{
        {u"Draughtsman"_s, u"/Applications/Draughtsman Suite"_s},
        {u"Draughtsman Viewer"_s, u"/Applications/Draughtsman Suite"_s},
        {u"Part Library"_s, u"/Applications/Draughtsman Suite"_s},
        {u"Zephyr"_s, u"/Applications/Utilities"_s},
        {u"Dragonfen"_s, u"/Applications/Games"_s},
        {u"Toadstool Tale"_s, u"/Applications/Games"_s},
    };
    switch (application.entry.kind) {
    case Kind::system:
        return u"/System/Applications"_s;
    case Kind::utility:
        return u"/System/Applications/Utilities"_s;
    case Kind::cryptex:
        return u"/System/Cryptexes/App/System/Applications"_s;
    case Kind::user:
        return u"/Users/ada/Applications"_s;
    default:
        return own.value(application.name, u"/Applications"_s);
    }
}

QMap<QString, QString> localizedNames(const QString& name) {
    static const QMap<QString, QMap<QString, QString>> names{
        {u"Calculator"_s,
         {{u"de"_s, u"Rechner"_s}, {u"fr"_s, u"Calculette"_s}, {u"ja"_s, u"計算機"_s}}},
        {u"Calendar"_s,
         {{u"de"_s, u"Kalender"_s}, {u"fr"_s, u"Calendrier"_s}, {u"ja"_s, u"カレンダー"_s}}},
        {u"Chess"_s, {{u"de"_s, u"Schach"_s}, {u"fr"_s, u"Échecs"_s}, {u"ja"_s, u"チェス"_s}}},
        {u"Clock"_s, {{u"de"_s, u"Uhr"_s}, {u"fr"_s, u"Horloge"_s}, {u"ja"_s, u"時計"_s}}},
        {u"Contacts"_s, {{u"de"_s, u"Kontakte"_s}, {u"ja"_s, u"連絡先"_s}}},
        {u"Dictionary"_s,
         {{u"de"_s, u"Lexikon"_s}, {u"fr"_s, u"Dictionnaire"_s}, {u"ja"_s, u"辞書"_s}}},
        {u"Notes"_s, {{u"de"_s, u"Notizen"_s}, {u"ja"_s, u"メモ"_s}}},
        {u"Weather"_s, {{u"de"_s, u"Wetter"_s}, {u"fr"_s, u"Météo"_s}, {u"ja"_s, u"天気"_s}}},
        {u"Toast Timer"_s, {{u"de"_s, u"Toastuhr"_s}, {u"es"_s, u"Temporizador"_s}}},
    };
    return names.value(name);
}

Application described(const Planned& application, int number) {
    static constexpr std::array systems{"10.13", "11.0", "12.0", "13.0", "14.2"};
    const CatalogEntry& entry = application.entry;
    const QString category = QString::fromLatin1(entry.category);
    Application result{.name = application.name, .folder = folderFor(application)};
    result.identifier = application.identifier;
    result.version = u"%1.%2.%3"_s.arg(1 + (number % 7)).arg(number % 10).arg(number % 4);
    result.build = QString::number(100 + (number * 7));
    if (!category.isEmpty())
        result.category = u"public.app-category."_s + category;
    result.minimumSystem = QString::fromLatin1(systems[std::size_t(number) % systems.size()]);
    result.privacyKeys = privacyKeysFor(category);
    result.architectures = number % 11 == 4  ? QStringList{u"x86_64"_s}
                           : number % 5 == 0 ? QStringList{u"arm64"_s}
                                             : QStringList{u"x86_64"_s, u"arm64"_s};
    result.icon = application.icon;
    result.iconFile = number % 4 == 1 ? u"AppIcon.icns"_s : u"AppIcon"_s;
    result.plistForm = number % 3 == 0 ? PlistForm::binary : PlistForm::xml;
    result.localizedNames = localizedNames(application.name);
    if (!result.localizedNames.isEmpty()) {
        result.displayName = application.name;
        result.localizationForm = LocalizationForm(number % 4);
    }
    result.modified = today().addDays(-(number * 13) % 900).addSecs(number * 61 % 3600);

    if (entry.vendor < 0) {
        result.signature = {Signature::Kind::system, {}, {}};
        result.architectures = {u"x86_64"_s, u"arm64e"_s};
        result.rights = u"Copyright © 2003–2026 Apple Inc.\nAll rights reserved."_s;
        result.modified = QDateTime(QDate(2026, 3, 16), QTime(4, 20), Qt::UTC);
        return result;
    }
    const Vendor& vendor = vendors()[std::size_t(entry.vendor)];
    const QString team = QString::fromLatin1(vendor.team);
    const QString notice = QString::fromUtf8(vendor.rights);
    result.rights = notice.contains(u"%1") ? notice.arg(2021 + (number % 6)) : notice;
    result.signature = {Signature::Kind::developerId, QString::fromUtf8(vendor.name), team};
    switch (entry.kind) {
    case Kind::sparkle:
        result.sparkleFeed = feedAddress(result);
        break;
    case Kind::wrapped:
        result.wrapped = WrappedMetadata{.realName = application.name.simplified().remove(u' '),
                                         .itemName = application.name + u": Every Day"_s,
                                         .categories = {*result.category},
                                         .artistName = QString::fromUtf8(vendor.name),
                                         .genre = u"Lifestyle"_s,
                                         .launchProhibited = application.name == u"Ticket Pouch",
                                         .withLink = application.name != u"Snackmap"};
        result.minimumSystem = u"16.4"_s;
        [[fallthrough]];
    case Kind::store:
        result.receipt = true;
        result.signature = {Signature::Kind::appStore, {}, team};
        result.storeIdentifier = 1'204'000'000 + (qint64(number) * 7919);
        if (result.wrapped)
            result.wrapped->itemId = *result.storeIdentifier;
        break;
    case Kind::keystone:
        result.info[u"KSUpdateURL"_s] = u"https://updates.example.com/service"_s;
        break;
    case Kind::adHoc:
        result.signature = {number % 2 ? Signature::Kind::adHoc : Signature::Kind::none, {}, {}};
        break;
    default:
        break;
    }
    result.isAgent = application.name == u"Sundial Bar";
    return result;
}

/// Tools and helpers that applications hold.
void addNested(Application& application) {
    const auto inner = [&application](const QString& name, const QString& folder,
                                      const QString& suffix) {
        Application nested{.name = name, .folder = folder};
        nested.identifier = *application.identifier + suffix;
        nested.version = application.version;
        nested.signature = application.signature;
        return nested;
    };
    if (application.name == u"Anvil Code") {
        for (const auto& [name, glyph] :
             {std::pair{u"Anvil Simulator"_s, "monitor"}, {u"Anvil Profiler"_s, "gauge"}}) {
            Application tool =
                inner(name, u"Contents/Applications"_s, u'.' + name.section(u' ', 1).toLower());
            tool.category = application.category;
            tool.icon =
                icnsBytes({.glyph = glyph, .top = 0x525a6b, .bottom = 0x20242e, .accent = 0xffa53c});
            application.nested.push_back(tool);
        }
    } else if (application.name == u"Sundial Bar" || application.name == u"Magpie Clips") {
        Application helper =
            inner(application.name + u" Helper"_s, u"Contents/Library/LoginItems"_s, u".helper"_s);
        helper.isAgent = true;
        application.nested.push_back(helper);
    }
}

/// What no one plans, but every Mac has.
void addOddBundles(MacBuilder& mac) {
    const auto drawn = [](const char* glyph, QRgb top, QRgb bottom) {
        return icnsBytes({.glyph = glyph, .top = top, .bottom = bottom});
    };
    // Reached by an alias, by a link, by two roads.
    mac.addApplication({.name = u"Prototype"_s,
                        .folder = u"/Users/ada/Developer/Build"_s,
                        .identifier = u"com.example.prototype"_s,
                        .signature = {Signature::Kind::adHoc, {}, {}},
                        .icon = drawn("bolt", 0xffd868, 0xf5a317)});
    mac.addAlias(u"/Applications/Prototype"_s, u"/Users/ada/Developer/Build/Prototype.app"_s);
    mac.addApplication({.name = u"Glassblower"_s,
                        .folder = u"/opt/glassblower"_s,
                        .identifier = u"org.glassblower.app"_s,
                        .icon = icnsBytes({
                            .glyph = "flame",
                            .accent = 0xff8a3c,
                            .shape = IconShape::free,
                        })});
    mac.addLink(u"/Applications/Glassblower.app"_s, u"/opt/glassblower/Glassblower.app"_s);
    mac.addAlias(u"/Users/ada/Applications/Quillbrook alias"_s, u"/Applications/Quillbrook.app"_s);
    mac.addAlias(u"/Applications/Old Thing alias"_s, u"/Applications/Old Thing.app"_s);
    mac.addLink(u"/Users/ada/Applications/All Applications"_s, u"/Applications"_s);
    mac.addLink(u"/Applications/Gone.app"_s, u"/Volumes/Backup/Gone.app"_s);
    // The same application twice.
    mac.addApplication({.name = u"Moorhen"_s,
                        .folder = u"/Applications/Previous Versions"_s,
                        .identifier = u"no.toyenverksted.moorhen"_s,
                        .version = u"1.4"_s,
                        .category = u"public.app-category.developer-tools"_s,
                        .icon = drawn("branch", 0x8a9bb5, 0x48566f)});
    // Still on their way, or damaged.
    mac.addApplication(
        {.name = u"Skylark"_s, .identifier = u"com.example.skylark"_s, .missing = Missing::executable});
    mac.addApplication({.name = u"Downloading"_s, .missing = Missing::contents});
    mac.addApplication({.name = u"Static"_s, .missing = Missing::info});
    mac.addFile(u"/Applications/Static.app/Contents/Info.plist"_s,
                "bplist00 and then nothing that makes sense");
    // Plain, old, and oddly written.
    mac.addApplication({.name = u"Backup Script"_s, .version = std::nullopt, .build = std::nullopt});
    mac.addApplication(
        {.name = u"Oldtimer"_s,
         .extension = u"APP"_s,
         .identifier = u"org.oldtimer.oldtimer"_s,
         .version = u"0.9b3"_s,
         .rights = u"© 1999-2006 The Oldtimer Club"_s,
         .architectures = {u"i386"_s},
         .icon =
             icnsBytes({.glyph = "sailboat", .top = 0xf3dcae, .bottom = 0xcfa05c, .accent = 0xd9534a},
                       IcnsForm::runLength),
         .iconFile = u"oldtimer.icns"_s,
         .info = {{u"LSUIElement"_s, u"no"_s}, {u"CFBundleVersion"_s, 9}}});
    mac.addApplication({.name = u"Finder"_s,
                        .folder = u"/System/Library/CoreServices"_s,
                        .identifier = u"com.apple.finder"_s,
                        .signature = {Signature::Kind::system, {}, {}}});
}

void addDemonstrationLeftovers(MacBuilder& mac, const QList<Application>& applications) {
    using enum Leftover;
    static const QList<QList<Leftover>> habits{
        {savedState, preferences, cache, httpStorage},
        {preferences, support, cache, logs, updaterCache, byHostPreferences},
        {container, groupContainer, webKit},
        {preferences, vendorSupport, savedState},
        {support, preferences, launchAgent, systemSupport, daemon, helperTool, systemPreferences},
        {supportById, httpStorage, webKit, systemAgent},
    };
    for (qsizetype i = 0; i < applications.size(); ++i) {
        const Application& application = applications[i];
        if (!application.signature.team.isEmpty())
            addLeftovers(mac, application, habits[i % habits.size()], application.signature.developer);
    }
    // What looks like a leftover of one of them and belongs to something else.
    const QString library = u"/Users/ada/Library/"_s;
    for (const auto* path :
         {u"Application Support/Meeting Notes/2026.txt", u"Application Support/Camera Raw/Settings.dat",
          u"Application Support/Harbor & Pine Software LLC/Shared/licences.dat",
          u"Group Containers/K4P7T2M9QX.com.harborpine.shared/common.db",
          u"Group Containers/group.com.example.household/store.db", u"Logs/Music Videos/list.log",
          u"Preferences/no.toyenverksted.anvilcoder.plist", u"Preferences/loginwindow.plist",
          u"Caches/Finches of Europe/photo.jpg"})
        mac.addFile(library + QString::fromUtf16(path), "Not a leftover.\n");
}

OldLaunchpad oldArrangement(const QList<Application>& applications) {
    QHash<QString, OldTile> byName;
    for (const Application& application : applications)
        byName[application.name] = {application.name, *application.identifier};
    const auto tiles = [&byName](const QStringList& names) {
        QList<OldTile> result;
        for (const QString& name : names)
            if (byName.contains(name))
                result.append(byName[name]);
        return result;
    };
    const auto page = [&tiles](const QStringList& names, const QList<OldFolder>& folders) {
        QList<OldItem> result;
        for (const OldTile& tile : tiles(names))
            result.append(tile);
        for (qsizetype i = 0; i < folders.size(); ++i)
            result.insert(std::min(result.size(), 2 + (3 * i)), folders[i]);
        return result;
    };
    OldLaunchpad launchpad{.olderForm = true};
    launchpad.pages.append(
        page({u"Web Browser"_s, u"Mail"_s, u"Maps"_s, u"Messages"_s, u"Calendar"_s, u"Reminders"_s,
              u"Notes"_s, u"Pictures"_s, u"Music"_s, u"Clock"_s, u"Calculator"_s, u"System Settings"_s},
             {{u"Other"_s,
               {tiles({u"Activity"_s, u"Console"_s, u"Disks"_s, u"Terminal"_s, u"Keys"_s}),
                tiles({u"Screenshot"_s, u"Network Tools"_s})}}}));
    launchpad.pages.append(page(
        {u"Quillbrook"_s, u"Moorhen"_s, u"Anvil Code"_s, u"Carrier Post"_s, u"Nocturne"_s, u"Orrery"_s},
        {{u"Spiele & Spaß"_s,
          {tiles({u"Skyhook"_s, u"Toadstool Tale"_s, u"Dragonfen"_s, u"Solitaire Garden"_s,
                  u"Marblerun"_s, u"Kitefall"_s})}},
         {u""_s, {tiles({u"Fernlight"_s, u"Glasswing"_s, u"Figwort Draw"_s})}},
         {u"Forgotten"_s, {{{u"Old Thing"_s, u"com.example.oldthing"_s}}}}}));
    launchpad.pages.append(page({u"Ledgerline"_s, u"Passkeep"_s, u"Loomfile"_s}, {}));
    launchpad.pages.last().append(OldTile{u"Vanished"_s, u"com.example.vanished"_s});
    // Known by its title alone: it was installed anew under another identifier.
    launchpad.pages.last().append(OldTile{u"Halcyon Player"_s, u"com.example.halcyon-before"_s});
    return launchpad;
}

} // namespace

void buildDemonstrationMac(MacBuilder& mac, std::optional<int> count) {
    QList<Planned> plan = planned(std::max(0, count.value_or(int(catalog().size()))));
    drawIcons(plan);

    mac.addStandardFolders();
    addTools(mac);
    QList<Application> applications;
    QList<Kind> kinds;
    for (int i = 0; i < plan.size(); ++i) {
        applications.append(described(plan[i], i));
        addNested(applications.last());
        mac.addApplication(applications.last());
        kinds.append(plan[i].entry.kind);
    }
    addOddBundles(mac);
    addUpdates(mac, applications, kinds);
    addDemonstrationLeftovers(mac, applications);
    addOldLaunchpad(mac, oldArrangement(applications));
    mac.settleDates(today());
}

} // namespace tessellar::sample
