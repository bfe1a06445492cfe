#include "platform/bundle.h"

#include "platform/strings_file.h"

#include <algorithm>
#include <utility>

namespace tessellar {
namespace {

constexpr std::uint64_t maximumInfoBytes = 4u << 20;
constexpr PropertyListLimits infoLimits{.bytes = maximumInfoBytes, .depth = 64, .nodes = 200'000};

struct ListFile {
    bool exists = false;
    PropertyValue list;
};

ListFile readList(const FileSystem& files, const QString& path) {
    const auto bytes = files.read(path, maximumInfoBytes);
    if (!bytes) {
        const FileError::Code code = bytes.error().code;
        return {.exists = code != FileError::Code::notFound && code != FileError::Code::notADirectory};
    }
    return {.exists = true, .list = parsePropertyList(*bytes, infoLimits).value_or(PropertyValue())};
}

bool isApplicationName(const QString& name) {
    return FileSystem::extension(name).compare(u"app", Qt::CaseInsensitive) == 0;
}

/// The iPhone bundle in a wrapped application: the target of "WrappedBundle" if that is within
/// "Wrapper", else the only application there.
std::optional<QString> wrappedBundle(const FileSystem& files, const QString& path) {
    const QString wrapper = FileSystem::joined(path, QStringLiteral("Wrapper"));
    if (const auto link = files.linkTarget(FileSystem::joined(path, QStringLiteral("WrappedBundle")))) {
        const QString said = FileSystem::fromHostBytes(*link);
        const QString target = FileSystem::standardized(FileSystem::joined(path, said));
        if (!said.startsWith(u'/') && target != wrapper && FileSystem::isWithin(target, wrapper) &&
            files.isDirectory(target))
            return target;
    }
    std::optional<QString> only;
    for (const DirectoryEntry& entry : files.entries(wrapper).value_or(QList<DirectoryEntry>())) {
        const QString name = FileSystem::fromHostBytes(entry.name);
        if (entry.type != FileType::directory || !isApplicationName(name))
            continue;
        if (only)
            return std::nullopt;
        only = FileSystem::joined(wrapper, name);
    }
    return only;
}

/// The path of `name` in `directory`; nullopt if it is absolute, empty or leaves `bundle`.
std::optional<QString> placeWithin(const QString& bundle, const QString& directory,
                                   const QString& name) {
    if (name.isEmpty() || name.startsWith(u'/') || name.contains(QChar(u'\0')))
        return std::nullopt;
    const QString place = FileSystem::standardized(FileSystem::joined(directory, name));
    if (place == directory || place == bundle || !FileSystem::isWithin(place, bundle))
        return std::nullopt;
    return place;
}

/// True for a plain name, which cannot leave its folder.
bool isFolderName(const QString& language) {
    return !language.isEmpty() && language.size() <= 64 && !language.contains(u'/') &&
           !language.startsWith(u'.');
}

/// The parts of a language tag as bundles write them: "zh", "Hant", "HK".
struct LanguageTag {
    QString language;
    QString script;
    QString region;
};

LanguageTag parsedTag(const QString& text) {
    // The environment may give "de_DE.UTF-8@euro".
    const QString plain = text.section(u'.', 0, 0).section(u'@', 0, 0);
    const QStringList parts = QString(plain).replace(u'_', u'-').split(u'-', Qt::SkipEmptyParts);
    LanguageTag tag{parts.value(0), {}, {}};
    for (const QString& part : parts.mid(1)) {
        if (part.size() == 4 && tag.script.isEmpty() && tag.region.isEmpty())
            tag.script = part;
        else if ((part.size() == 2 || part.size() == 3) && tag.region.isEmpty())
            tag.region = part;
    }
    return tag;
}

/// Chinese without a script is written in that of its region.
QString scriptOf(const LanguageTag& tag) {
    static const QStringList traditional{QStringLiteral("TW"), QStringLiteral("HK"),
                                         QStringLiteral("MO")};
    if (!tag.script.isEmpty() || tag.language != u"zh")
        return tag.script;
    return traditional.contains(tag.region) ? QStringLiteral("Hant") : QStringLiteral("Hans");
}

/// The wider region whose form of the language is the closest; empty if there is none.
QString widerRegion(const LanguageTag& tag) {
    static const QStringList notLatinAmerican{QStringLiteral("ES"), QStringLiteral("EA"),
                                              QStringLiteral("IC"), QStringLiteral("GQ"),
                                              QStringLiteral("PH"), QStringLiteral("419")};
    static const QStringList american{QStringLiteral("US"), QStringLiteral("CA"), QStringLiteral("PH"),
                                      QStringLiteral("PR"), QStringLiteral("GB")};
    if (tag.region.isEmpty())
        return {};
    if (tag.language == u"es" && !notLatinAmerican.contains(tag.region))
        return QStringLiteral("419");
    if (tag.language == u"en" && !american.contains(tag.region))
        return QStringLiteral("GB");
    if (tag.language == u"pt" && tag.region != u"BR" && tag.region != u"PT")
        return QStringLiteral("PT");
    return {};
}

/// The names of one language's folders in bundles, the likeliest first: "de-DE", "de_DE", "de",
/// "German"; "zh-Hant-HK", "zh-HK", "zh-Hant", "zh_TW", "zh"; "es-MX", "es-419", "es".
QStringList folderNames(const QString& language) {
    static const QMap<QString, QString> olderNames{
        {QStringLiteral("de"), QStringLiteral("German")},
        {QStringLiteral("en"), QStringLiteral("English")},
        {QStringLiteral("es"), QStringLiteral("Spanish")},
        {QStringLiteral("fr"), QStringLiteral("French")},
        {QStringLiteral("it"), QStringLiteral("Italian")},
        {QStringLiteral("ja"), QStringLiteral("Japanese")},
        {QStringLiteral("nb"), QStringLiteral("no")},
        {QStringLiteral("nl"), QStringLiteral("Dutch")},
        {QStringLiteral("zh-Hans"), QStringLiteral("zh_CN")},
        {QStringLiteral("zh-Hant"), QStringLiteral("zh_TW")},
    };
    const LanguageTag tag = parsedTag(language);
    const QString script = scriptOf(tag);
    QStringList names;
    const auto add = [&](const QString& middle, const QString& region) {
        QString name = tag.language;
        for (const QString& part : {middle, region})
            if (!part.isEmpty())
                name += u'-' + part;
        for (const QString& form : {name, QString(name).replace(u'-', u'_'), olderNames.value(name)})
            if (!form.isEmpty() && !names.contains(form))
                names.append(form);
    };
    if (!tag.region.isEmpty()) {
        if (!script.isEmpty())
            add(script, tag.region);
        // If the script is not the region's usual one, the region alone names another form.
        if (tag.script.isEmpty() || scriptOf({tag.language, {}, tag.region}) == script)
            add({}, tag.region);
    }
    if (const QString wider = widerRegion(tag); !wider.isEmpty())
        add({}, wider);
    if (!script.isEmpty())
        add(script, {});
    add({}, {});
    return names;
}

/// The possible folder names for the user's languages, in order; the bundle's development language
/// comes last.
QStringList localizationNames(const Bundle& bundle, const QStringList& languages) {
    const QString native =
        bundle.info[QStringLiteral("CFBundleDevelopmentRegion")].text().value_or(QString());
    const QStringList nativeNames = isFolderName(native) ? folderNames(native) : QStringList();
    QStringList result;
    for (const QString& language : languages) {
        if (!isFolderName(language))
            continue;
        const QStringList names = folderNames(language);
        result += names;
        // The language of the Info.plist itself needs no folder.
        if (names.contains(native) || nativeNames.contains(language))
            return result;
    }
    return result + nativeNames;
}

QString tablePath(const Bundle& bundle) {
    return FileSystem::joined(bundle.resourcesPath, QStringLiteral("InfoPlist.loctable"));
}

QString stringsPath(const Bundle& bundle, const QString& localization) {
    return FileSystem::joined(bundle.resourcesPath,
                              localization + QStringLiteral(".lproj/InfoPlist.strings"));
}

/// The bundle's localized values in the first of the languages that it supports, if any.
PropertyValue localizedInfo(const FileSystem& files, const Bundle& bundle,
                            const QStringList& languages) {
    const PropertyValue table = readList(files, tablePath(bundle)).list;
    for (const QString& name : localizationNames(bundle, languages)) {
        if (const PropertyValue entries = table[name]; entries.isDictionary())
            return entries;
        if (const auto bytes = files.read(stringsPath(bundle, name), maximumInfoBytes))
            return readStringsFile(*bytes);
    }
    return {};
}

bool hasLocalizedName(const Bundle& bundle) {
    const QString onDisk = FileSystem::fileName(bundle.path);
    const auto declared = bundle.info[QStringLiteral("CFBundleDisplayName")].text();
    return (declared && (*declared == onDisk || *declared == withoutApplicationExtension(onDisk))) ||
           bundle.info[QStringLiteral("LSHasLocalizedDisplayName")].isTruthy();
}

} // namespace

QString withoutApplicationExtension(QString name) {
    if (name.size() > 4 && isApplicationName(name))
        name.chop(4);
    return name;
}

QString nameOnDisk(const QString& path) {
    return withoutApplicationExtension(FileSystem::fileName(path)).replace(u':', u'/');
}

std::optional<QString> Bundle::identifier() const {
    return info[QStringLiteral("CFBundleIdentifier")].text();
}
std::optional<QString> Bundle::version() const {
    return info[QStringLiteral("CFBundleShortVersionString")].text();
}
std::optional<QString> Bundle::build() const { return info[QStringLiteral("CFBundleVersion")].text(); }
std::optional<QString> Bundle::category() const {
    return info[QStringLiteral("LSApplicationCategoryType")].text();
}
std::optional<QString> Bundle::minimumSystemVersion() const {
    return info[QStringLiteral("LSMinimumSystemVersion")].text();
}

std::optional<QString> Bundle::executablePath() const {
    const auto name = info[QStringLiteral("CFBundleExecutable")].text();
    if (!name)
        return std::nullopt;
    return shape == BundleShape::mac
               ? placeWithin(path, FileSystem::joined(path, QStringLiteral("Contents/MacOS")), *name)
               : placeWithin(resourcesPath, resourcesPath, *name);
}

std::optional<QString> Bundle::iconPath() const {
    auto name = info[QStringLiteral("CFBundleIconFile")].text();
    if (!name || name->isEmpty())
        return std::nullopt;
    if (!name->endsWith(u".icns", Qt::CaseInsensitive))
        name->append(u".icns");
    return placeWithin(shape == BundleShape::mac ? path : resourcesPath, resourcesPath, *name);
}

Bundle readBundle(const FileSystem& files, const QString& path) {
    Bundle bundle{.path = path,
                  .infoPath = FileSystem::joined(path, QStringLiteral("Contents/Info.plist")),
                  .resourcesPath = FileSystem::joined(path, QStringLiteral("Contents/Resources"))};
    // Nearly all bundles are a Mac's: only one file is read.
    ListFile info = readList(files, bundle.infoPath);
    if (!info.exists) {
        ListFile metadata =
            readList(files, FileSystem::joined(path, QStringLiteral("Wrapper/iTunesMetadata.plist")));
        const auto real = wrappedBundle(files, path);
        const QString inner = real.value_or(path);
        const QString innerInfo = FileSystem::joined(inner, QStringLiteral("Info.plist"));
        ListFile flat = readList(files, innerInfo);
        if (metadata.exists || real || flat.exists) {
            bundle.shape = metadata.exists || real ? BundleShape::wrapped : BundleShape::flat;
            bundle.infoPath = innerInfo;
            bundle.resourcesPath = inner;
            bundle.storeMetadata = std::move(metadata.list);
            info = std::move(flat);
        }
    }
    bundle.info = std::move(info.list);
    return bundle;
}

bool isWrappedApplication(const FileSystem& files, const QString& path) {
    return files.isRegularFile(
        FileSystem::joined(path, QStringLiteral("Wrapper/iTunesMetadata.plist")));
}

QString finderDisplayName(const FileSystem& files, const Bundle& bundle, const QStringList& languages) {
    const QString name = nameOnDisk(bundle.path);
    if (!hasLocalizedName(bundle))
        return name;
    const PropertyValue localized = localizedInfo(files, bundle, languages);
    for (const auto* key : {u"CFBundleDisplayName", u"CFBundleName"}) {
        const auto text = localized[QString::fromUtf16(key)].text();
        if (text && !text->trimmed().isEmpty() && text->size() <= 255)
            return withoutApplicationExtension(*text);
    }
    return name;
}

QStringList displayNameSources(const Bundle& bundle, const QStringList& languages) {
    if (!hasLocalizedName(bundle))
        return {};
    QStringList sources{tablePath(bundle)};
    for (const QString& name : localizationNames(bundle, languages))
        sources.append(stringsPath(bundle, name));
    return sources;
}

} // namespace tessellar
