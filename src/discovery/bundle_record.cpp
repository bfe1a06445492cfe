#include "discovery/bundle_record.h"

namespace tessellar {

namespace {

/// Longer texts are not names or identifiers and would only waste memory.
constexpr qsizetype maximumTextLength = 1'024;

std::optional<QString> usable(const std::optional<QString>& text) {
    if (!text || text->size() > maximumTextLength || QStringView(*text).trimmed().isEmpty())
        return std::nullopt;
    return text;
}

/// Of the bundle, its applications, its Info.plist and its executable.
constexpr qsizetype usualObservations = 4;

/// Replaces line breaks and drops direction overrides, which can make one name look like another.
QString toSingleLine(QString name) {
    name.removeIf([](QChar c) {
        return (c >= QChar(0x202A) && c <= QChar(0x202E)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
    });
    for (QChar& c : name)
        if (c.category() == QChar::Other_Control || c == QChar(0x2028) || c == QChar(0x2029))
            c = u' ';
    return name;
}

/// The expected path of the executable. An undeclared one is named like the bundle; one declared
/// outside the bundle does not count.
std::optional<QString> executableOf(const Bundle& bundle) {
    if (auto declared = bundle.executablePath();
        declared || bundle.info[QStringLiteral("CFBundleExecutable")].text())
        return declared;
    const QString contents = FileSystem::parent(bundle.infoPath);
    const bool isMac = bundle.shape == BundleShape::mac;
    const QString name = FileSystem::fileName(isMac ? bundle.path : contents);
    return FileSystem::joined(isMac ? contents + QStringLiteral("/MacOS") : contents,
                              withoutApplicationExtension(name));
}

/// The state of a bundle that can be told from its path alone; nullopt for a folder.
std::optional<AppScanner::InstallState> stateFromOutside(const ScanObservation& self) {
    if (self.isDirectory())
        return std::nullopt;
    return self.hasFailed() ? AppScanner::InstallState::unseen : AppScanner::InstallState::missing;
}

AppScanner::InstallState stateFromInside(const Bundle& bundle, bool hasExecutable) {
    return !bundle.info.isAbsent() && hasExecutable ? AppScanner::InstallState::ready
                                                    : AppScanner::InstallState::incomplete;
}

/// Reads a bundle and records everything that the result depends on. Paths known beforehand are
/// observed before they are read, so that a change in between is noticed next time.
class RecordReader {
public:
    RecordReader(const ScanContext& context, const QString& path) : _context(context) {
        _record.path = path;
        _record.evidence.observations.reserve(usualObservations);
    }

    BundleRecord run() {
        if (const auto state = stateFromOutside(note(_record.path)))
            _record.state = *state;
        else
            readContents();
        _record.evidence.settle(_context.now);
        return std::move(_record);
    }

private:
    void readContents() {
        // A link here leads to something that is not part of the application.
        const QString applications = inBundle("Contents/Applications");
        const ScanObservation& inner = note(applications);
        _record.isPartlyUnseen = inner.hasFailed();
        _record.holdsApplications =
            inner.isDirectory() && _context.files.resolved(applications) == applications;
        const bool hasInfo = note(inBundle("Contents/Info.plist")).found();
        if (!hasInfo)
            for (const auto* place :
                 {"Contents", "Wrapper", "Wrapper/iTunesMetadata.plist", "Info.plist"})
                note(inBundle(place));

        Bundle bundle = readBundle(_context.files, _record.path);
        if (bundle.shape == BundleShape::wrapped) {
            // Only now is the inner bundle's path known.
            note(FileSystem::parent(bundle.infoPath));
            note(bundle.infoPath);
            bundle = readBundle(_context.files, _record.path);
        }
        const auto executable = executableOf(bundle);
        const bool hasExecutable = executable && note(*executable).status.type == FileType::regular;
        _record.state = stateFromInside(bundle, hasExecutable);
        _record.isLaunchProhibited =
            bundle.storeMetadata[QStringLiteral("launchProhibited")].isTruthy();
        if (_record.state == AppScanner::InstallState::ready)
            describe(bundle);
    }

    void describe(const Bundle& bundle) {
        const auto wrapped =
            AppScanner::wrappedMetadata(bundle).value_or(AppScanner::WrappedIOSAppMetadata());
        _record.bundleIdentifier =
            usable(wrapped.bundleIdentifier ? wrapped.bundleIdentifier : bundle.identifier());
        _record.category = usable(wrapped.category ? wrapped.category : bundle.category());
        _record.name = usable(toSingleLine(wrapped.name.value_or(QString()))).value_or(QString());
        if (_record.name.isEmpty()) {
            const bool isLocalized = noteNameSources(bundle);
            const QString shown = isLocalized
                                      ? finderDisplayName(_context.files, bundle, _context.languages)
                                      : nameOnDisk(_record.path);
            _record.name = usable(toSingleLine(withoutApplicationExtension(shown)))
                               .value_or(toSingleLine(nameOnDisk(_record.path)));
        }
        _record.nameSortKey = _context.locale.nameSortKey(_record.name);
    }

    /// Records what the localized name depends on. Few of the possible files exist; that the others do
    /// not is covered by observing their parent folders. False if there are none.
    bool noteNameSources(const Bundle& bundle) {
        const QStringList sources = displayNameSources(bundle, _context.languages);
        if (!sources.isEmpty())
            note(bundle.resourcesPath);
        for (const QString& source : sources) {
            const QString folder = FileSystem::parent(source);
            if (folder == bundle.resourcesPath ? _context.files.exists(source)
                                               : _context.files.exists(folder))
                note(source);
        }
        return !sources.isEmpty();
    }

    QString inBundle(const char* place) const {
        return FileSystem::joined(_record.path, QLatin1StringView(place));
    }

    /// The result holds until the next one.
    const ScanObservation& note(const QString& path) {
        return _record.evidence.observations.emplaceBack(
            ScanObservation::ofStatus(_context.files, path));
    }

    const ScanContext& _context;
    BundleRecord _record;
};

} // namespace

std::optional<std::int64_t> BundleRecord::fileIdentifier() const {
    const ScanObservation& self = evidence.observations.first();
    if (!self.found())
        return std::nullopt;
    return static_cast<std::int64_t>(self.status.inode);
}

bool BundleRecord::sameFindings(const BundleRecord& other) const {
    return state == other.state && isLaunchProhibited == other.isLaunchProhibited &&
           holdsApplications == other.holdsApplications && isPartlyUnseen == other.isPartlyUnseen &&
           name == other.name && bundleIdentifier == other.bundleIdentifier &&
           category == other.category && fileIdentifier() == other.fileIdentifier();
}

BundleRecord readBundleRecord(const ScanContext& context, const QString& path) {
    return RecordReader(context, path).run();
}

std::optional<AppScanner::WrappedIOSAppMetadata> AppScanner::wrappedMetadata(const Bundle& bundle) {
    if (bundle.shape != BundleShape::wrapped)
        return std::nullopt;
    const PropertyValue& declared = bundle.storeMetadata;
    WrappedIOSAppMetadata result{.bundleIdentifier =
                                     declared[QStringLiteral("softwareVersionBundleId")].text(),
                                 .name = declared[QStringLiteral("itemName")].text(),
                                 .category = std::nullopt,
                                 .sourceApp = declared[QStringLiteral("sourceApp")].text()};
    for (const PropertyValue& category : declared[QStringLiteral("categories")].array()) {
        result.category = category.text();
        if (result.category)
            break;
    }
    return result;
}

AppScanner::InstallState AppScanner::installState(const FileSystem& files, const QString& path) {
    if (const auto state = stateFromOutside(ScanObservation::ofStatus(files, path)))
        return *state;
    const Bundle bundle = readBundle(files, path);
    const auto executable = executableOf(bundle);
    return stateFromInside(bundle, executable && files.isRegularFile(*executable));
}

} // namespace tessellar
