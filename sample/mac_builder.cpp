#include "sample/mac_builder.h"

#include "sample/alias_writer.h"

#include <QtEndian>

#include <array>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace tessellar::sample {

using namespace Qt::Literals::StringLiterals;
namespace fs = std::filesystem;

namespace {

fs::path native(const QString& path) { return fs::path(path.toStdString()); }

template <typename T>
QByteArray raw(T value) {
    return {reinterpret_cast<const char*>(&value), sizeof value};
}

/// Processor type and subtype of a Mach-O header.
std::pair<quint32, quint32> processor(const QString& architecture) {
    static const QMap<QString, std::pair<quint32, quint32>> known{
        {u"i386"_s, {7, 3}},
        {u"x86_64"_s, {0x01000007, 3}},
        {u"arm64"_s, {0x0100000c, 0}},
        {u"arm64e"_s, {0x0100000c, 0x80000002}},
    };
    return known.value(architecture, {0x0100000c, 0});
}

QByteArray machHeader(const QString& architecture) {
    const auto [type, subtype] = processor(architecture);
    const bool wide = type & 0x01000000;
    QByteArray header;
    for (const quint32 word : {wide ? 0xfeedfacfu : 0xfeedfaceu, type, subtype, 2u, 0u, 0u, 0x85u})
        header += raw(qToLittleEndian(word));
    return wide ? header + QByteArray(4, '\0') : header;
}

Plist::Dictionary baseInfo(const Application& application, const QString& executable) {
    Plist::Dictionary info{
        {u"CFBundleInfoDictionaryVersion"_s, u"6.0"_s}, {u"CFBundlePackageType"_s, u"APPL"_s},
        {u"CFBundleDevelopmentRegion"_s, u"en"_s},      {u"CFBundleName"_s, application.name},
        {u"CFBundleExecutable"_s, executable},
    };
    const auto put = [&info](const QString& key, const std::optional<QString>& value) {
        if (value)
            info[key] = *value;
    };
    put(u"CFBundleIdentifier"_s, application.identifier);
    put(u"CFBundleShortVersionString"_s, application.version);
    put(u"CFBundleVersion"_s, application.build);
    put(u"CFBundleDisplayName"_s, application.displayName);
    put(u"LSApplicationCategoryType"_s, application.category);
    put(u"NSHumanReadableCopyright"_s, application.rights);
    put(u"SUFeedURL"_s, application.sparkleFeed);
    for (const QString& key : application.privacyKeys)
        info[key] = application.name + u" needs this for what you asked it to do."_s;
    return info;
}

Plist::Dictionary merged(Plist::Dictionary info, const Plist::Dictionary& further) {
    info.insert(further);
    return info;
}

/// A name that stays in the folder it is put in.
bool isPlainName(const QString& name) {
    return !name.isEmpty() && !name.contains(u'/') && name != u"." && name != u"..";
}

QByteArray signatureText(const Signature& signature, const Application& application) {
    const QString form =
        application.architectures.size() == 1
            ? u"app bundle with Mach-O thin (%1)"_s.arg(application.architectures.first())
            : u"app bundle with Mach-O universal (%1)"_s.arg(application.architectures.join(u' '));
    QString text =
        u"Identifier=%1\nFormat=%2\n"_s.arg(application.identifier.value_or(application.name), form);
    const QString root = u"Authority=Apple Root CA\n"_s;
    switch (signature.kind) {
    case Signature::Kind::none:
        return {};
    case Signature::Kind::adHoc:
        text += u"CodeDirectory v=20400 size=388 flags=0x20002(adhoc,linker-signed) hashes=9+0 "
                "location=embedded\nSignature=adhoc\nTeamIdentifier=not set\n"_s;
        break;
    case Signature::Kind::developerId:
        text += u"CodeDirectory v=20500 size=612 flags=0x10000(runtime) hashes=8+7 "
                "location=embedded\n"_s +
                u"Authority=Developer ID Application: %1 (%2)\n"_s.arg(signature.developer,
                                                                       signature.team) +
                u"Authority=Developer ID Certification Authority\n"_s + root +
                u"Notarization Ticket=stapled\nTeamIdentifier=%1\n"_s.arg(signature.team);
        break;
    case Signature::Kind::appStore:
        text += u"CodeDirectory v=20500 size=612 flags=0x200(kill) hashes=8+7 location=embedded\n"
                "Authority=Apple Mac OS Application Signing\n"
                "Authority=Apple Worldwide Developer Relations Certification Authority\n"_s +
                root + u"TeamIdentifier=%1\n"_s.arg(signature.team);
        break;
    case Signature::Kind::system:
        text += u"CodeDirectory v=20400 size=388 flags=0x0(none) hashes=9+0 location=embedded\n"
                "Authority=Software Signing\nAuthority=Apple Code Signing Certification Authority\n"_s +
                root + u"TeamIdentifier=not set\n"_s;
        break;
    }
    return text.toUtf8();
}

} // namespace

QByteArray executableBytes(const QStringList& architectures) {
    if (architectures.size() == 1)
        return machHeader(architectures.first());
    QByteArray head = raw(qToBigEndian(0xcafebabeu)) + raw(qToBigEndian(quint32(architectures.size())));
    QByteArray slices;
    const auto start = quint32((8 + 20 * architectures.size() + 63) & ~63);
    for (const QString& architecture : architectures) {
        const auto [type, subtype] = processor(architecture);
        const QByteArray slice = machHeader(architecture);
        for (const quint32 word :
             {type, subtype, start + quint32(slices.size()), quint32(slice.size()), 6u})
            head += raw(qToBigEndian(word));
        slices += slice + QByteArray(-slice.size() & 63, '\0');
    }
    return head + QByteArray(start - head.size(), '\0') + slices;
}

MacBuilder::MacBuilder(const QString& hostRoot) : _root(hostRoot) {
    while (_root.endsWith(u'/'))
        _root.chop(1);
    addDirectory(QString());
}

void MacBuilder::fail(const QString& path, const QString& reason) {
    if (_failure)
        return;
    _failure = u"Could not write “%1” of the sample Mac: %2."_s.arg(path, reason);
    qWarning("%s", qUtf8Printable(*_failure));
}

void MacBuilder::clear(const QString& path) {
    std::error_code error;
    fs::remove_all(native(hostPath(path)), error);
    if (error)
        fail(path, QString::fromStdString(error.message()));
}

void MacBuilder::addDirectory(const QString& path) {
    if (_failure)
        return;
    std::error_code error;
    fs::create_directories(native(hostPath(path)), error);
    if (error)
        fail(path, QString::fromStdString(error.message()));
}

void MacBuilder::addFile(const QString& path, const QByteArray& bytes, unsigned mode) {
    addDirectory(path.first(path.lastIndexOf(u'/')));
    if (_failure)
        return;
    // A link in the file's place would be written through.
    const QByteArray name = hostPath(path).toUtf8();
    ::unlink(name.constData());
    const int file =
        ::open(name.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, mode);
    bool written = file >= 0;
    for (qsizetype done = 0; written && done < bytes.size();) {
        const ssize_t count = ::write(file, bytes.constData() + done, std::size_t(bytes.size() - done));
        written = count > 0;
        done += count;
    }
    // The mask of the caller's process must not change what is built.
    written = written && ::fchmod(file, mode) == 0;
    const int reason = errno;
    if (file >= 0 && ::close(file) != 0)
        written = false;
    if (!written)
        fail(path, QString::fromLocal8Bit(std::strerror(reason)));
}

void MacBuilder::addPropertyList(const QString& path, const Plist& value, PlistForm form) {
    addFile(path, plistBytes(value, form));
}

void MacBuilder::addLink(const QString& path, const QString& target) {
    addDirectory(path.first(path.lastIndexOf(u'/')));
    if (_failure)
        return;
    const QByteArray name = hostPath(path).toUtf8();
    ::unlink(name.constData());
    if (::symlink(target.toUtf8().constData(), name.constData()) != 0)
        fail(path, QString::fromLocal8Bit(std::strerror(errno)));
}

void MacBuilder::addAlias(const QString& path, const QString& target) {
    addFile(path, aliasFileBytes(target));
}

QString MacBuilder::addApplication(const Application& application) {
    const QString path = application.folder + u'/' + application.name + u'.' + application.extension;
    addBundle(path, application);
    return path;
}

void MacBuilder::addBundle(const QString& path, const Application& application) {
    if (_failure)
        return;
    clear(path);
    addDirectory(path);
    if (application.modified)
        setModified(path, *application.modified);
    if (application.wrapped) {
        addWrapped(path, application);
        return;
    }
    if (application.missing == Missing::contents)
        return;

    const QString contents = path + u"/Contents"_s;
    const QString executable = application.executable.value_or(application.name);
    Plist::Dictionary info = baseInfo(application, executable);
    info[u"CFBundleSupportedPlatforms"_s] = texts({u"MacOSX"_s});
    info[u"DTPlatformName"_s] = u"macosx"_s;
    if (application.minimumSystem)
        info[u"LSMinimumSystemVersion"_s] = *application.minimumSystem;
    if (!application.icon.isEmpty())
        info[u"CFBundleIconFile"_s] = application.iconFile;
    if (application.isAgent)
        info[u"LSUIElement"_s] = true;

    addFile(contents + u"/PkgInfo"_s, "APPL????");
    if (application.missing != Missing::info)
        addPropertyList(contents + u"/Info.plist"_s, merged(info, application.info),
                        application.plistForm);
    if (application.missing != Missing::executable && isPlainName(executable))
        addExecutable(contents + u"/MacOS/"_s + executable, executableBytes(application.architectures));
    const QString resources = contents + u"/Resources"_s;
    if (!application.icon.isEmpty()) {
        const QString suffix = application.iconFile.endsWith(u".icns"_s) ? QString() : u".icns"_s;
        addFile(resources + u'/' + application.iconFile + suffix, application.icon);
    }
    addLocalizations(resources, application);
    if (application.receipt)
        addFile(contents + u"/_MASReceipt/receipt"_s, QByteArray("\x30\x80\x06\x09", 4));
    if (application.sparkleFeed || application.sparkleFramework) {
        addFile(contents + u"/Frameworks/Sparkle.framework/Versions/B/Sparkle"_s,
                executableBytes(application.architectures), 0755);
        addLink(contents + u"/Frameworks/Sparkle.framework/Versions/Current"_s, u"B"_s);
        addLink(contents + u"/Frameworks/Sparkle.framework/Sparkle"_s, u"Versions/Current/Sparkle"_s);
    }
    addAnswers(path, contents + u"/MacOS/"_s + executable, application);
    for (const Application& nested : application.nested)
        addBundle(path + u'/' + nested.folder + u'/' + nested.name + u'.' + nested.extension, nested);
}

void MacBuilder::addWrapped(const QString& path, const Application& application) {
    const WrappedMetadata& wrapped = *application.wrapped;
    const QString real = u"Wrapper/"_s + wrapped.realName + u".app"_s;
    const QString bundle = path + u'/' + real;
    const QString executable = application.executable.value_or(wrapped.realName);

    Plist::Dictionary info = baseInfo(application, executable);
    info[u"CFBundleSupportedPlatforms"_s] = texts({u"iPhoneOS"_s});
    info[u"DTPlatformName"_s] = u"iphoneos"_s;
    info[u"LSRequiresIPhoneOS"_s] = true;
    info[u"UIDeviceFamily"_s] = Plist::Array{1, 2};
    info[u"MinimumOSVersion"_s] = application.minimumSystem.value_or(u"16.0"_s);
    if (!application.icon.isEmpty()) {
        info[u"CFBundleIcons"_s] =
            Plist::Dictionary{{u"CFBundlePrimaryIcon"_s,
                               Plist::Dictionary{{u"CFBundleIconFiles"_s, texts({u"AppIcon60x60"_s})},
                                                 {u"CFBundleIconName"_s, u"AppIcon"_s}}}};
        addFile(bundle + u"/AppIcon60x60@2x.png"_s, application.icon);
    }
    if (application.missing != Missing::info)
        addPropertyList(bundle + u"/Info.plist"_s, merged(info, application.info),
                        application.plistForm);
    if (application.missing != Missing::executable && isPlainName(executable))
        addExecutable(bundle + u'/' + executable, executableBytes({u"arm64"_s}));
    addLocalizations(bundle, application);

    Plist::Dictionary metadata{
        {u"itemId"_s, wrapped.itemId},
        {u"itemName"_s, wrapped.itemName},
        {u"artistName"_s, wrapped.artistName},
        {u"genre"_s, wrapped.genre},
        {u"categories"_s, texts(wrapped.categories)},
        {u"kind"_s, u"software"_s},
        {u"launchProhibited"_s, wrapped.launchProhibited},
        {u"storefrontCountryCode"_s, u"us"_s},
    };
    if (application.identifier)
        metadata[u"softwareVersionBundleId"_s] = *application.identifier;
    if (application.version)
        metadata[u"bundleShortVersionString"_s] = *application.version;
    if (application.build)
        metadata[u"bundleVersion"_s] = *application.build;
    addPropertyList(path + u"/Wrapper/iTunesMetadata.plist"_s, metadata, PlistForm::xml);
    if (wrapped.withLink)
        addLink(path + u"/WrappedBundle"_s, real);
    if (application.receipt)
        addFile(path + u"/_MASReceipt/receipt"_s, QByteArray("\x30\x80\x06\x09", 4));
    addAnswers(path, bundle + u'/' + executable, application);
}

void MacBuilder::addLocalizations(const QString& resources, const Application& application) {
    if (application.localizedNames.isEmpty())
        return;
    Plist::Dictionary table{{u"LocProvenance"_s, Plist::Dictionary{{u"en"_s, u"Base"_s}}}};
    for (auto name = application.localizedNames.begin(); name != application.localizedNames.end();
         ++name) {
        const QMap<QString, QString> entries{{u"CFBundleDisplayName"_s, name.value()},
                                             {u"CFBundleName"_s, name.value()}};
        const Plist::Dictionary dictionary{{u"CFBundleDisplayName"_s, name.value()},
                                           {u"CFBundleName"_s, name.value()}};
        const QString path = resources + u'/' + name.key() + u".lproj/InfoPlist.strings"_s;
        switch (application.localizationForm) {
        case LocalizationForm::stringsUtf16:
            addFile(path, stringsFileBytes(entries, true));
            break;
        case LocalizationForm::stringsUtf8:
            addFile(path, stringsFileBytes(entries, false));
            break;
        case LocalizationForm::propertyList:
            addPropertyList(path, dictionary);
            break;
        case LocalizationForm::loctable:
            table[name.key()] = dictionary;
            break;
        }
    }
    if (application.localizationForm == LocalizationForm::loctable)
        addPropertyList(resources + u"/InfoPlist.loctable"_s, table);
}

void MacBuilder::addAnswers(const QString& path, const QString& executable,
                            const Application& application) {
    const QString answers = toolData() + u"/answers"_s;
    if (const QByteArray text = signatureText(application.signature, application); !text.isEmpty())
        addFile(answers + path + u"/codesign"_s, "Executable=" + executable.toUtf8() + '\n' + text);
    if (application.signature.kind == Signature::Kind::appStore)
        addPropertyList(answers + path + u"/entitlements"_s,
                        Plist::Dictionary{{u"com.apple.security.app-sandbox"_s, true}}, PlistForm::xml);
    if (application.storeIdentifier)
        addFile(answers + path + u"/mdls"_s,
                "kMDItemAppStoreAdamID=" + QByteArray::number(*application.storeIdentifier) + '\n');
    const QString name = executable.sliced(executable.lastIndexOf(u'/') + 1);
    if (application.missing != Missing::executable && isPlainName(name))
        addFile(answers + executable + u"/lipo"_s,
                application.architectures.join(u' ').toUtf8() + '\n');
}

void MacBuilder::addStandardFolders(const QString& home) {
    for (const auto* folder :
         {u"/Applications/Utilities", u"/System/Applications/Utilities",
          u"/System/Library/CoreServices", u"/System/Cryptexes/App/System/Applications",
          u"/Users/Shared", u"/Volumes", u"/private/tmp", u"/private/var/folders", u"/usr/bin", u"/opt",
          u"/Library/Application Support"})
        addDirectory(QString::fromUtf16(folder));
    for (const auto* folder : {u"Application Support", u"Preferences", u"LaunchAgents"})
        addDirectory(u"/Library/"_s + QString::fromUtf16(folder));
    for (const auto* folder : {u"LaunchDaemons", u"PrivilegedHelperTools"})
        addDirectory(u"/Library/"_s + QString::fromUtf16(folder));
    addLink(u"/tmp"_s, u"private/tmp"_s);
    addLink(u"/var"_s, u"private/var"_s);
    for (const auto* folder : {u"Applications", u"Desktop", u"Documents", u"Downloads", u".Trash",
                               u"Library/Application Support", u"Library/Caches", u"Library/Logs",
                               u"Library/Preferences/ByHost", u"Library/Containers",
                               u"Library/Group Containers", u"Library/Saved Application State",
                               u"Library/HTTPStorages", u"Library/WebKit", u"Library/LaunchAgents"})
        addDirectory(home + u'/' + QString::fromUtf16(folder));
}

void MacBuilder::settleDates(const QDateTime& date) {
    if (_failure)
        return;
    const auto dateOf = [&](QString path) {
        while (!path.isEmpty()) {
            if (const auto found = _dates.find(path); found != _dates.end())
                return found->second;
            path.truncate(path.lastIndexOf(u'/'));
        }
        return date;
    };
    const auto settle = [&](const fs::path& file) {
        const QString path = QString::fromStdString(file.string()).sliced(_root.size());
        const qint64 milliseconds = dateOf(path).toMSecsSinceEpoch();
        const timespec time{time_t(milliseconds / 1000), long(milliseconds % 1000) * 1'000'000};
        const std::array times{time, time};
        if (::utimensat(AT_FDCWD, file.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0)
            fail(path, QString::fromLocal8Bit(std::strerror(errno)));
    };
    std::error_code error;
    const fs::path root = native(_root);
    for (fs::recursive_directory_iterator entry(root, error), end; !error && entry != end;
         entry.increment(error))
        settle(entry->path());
    settle(root);
    if (error)
        fail(u"/"_s, QString::fromStdString(error.message()));
}

} // namespace tessellar::sample
