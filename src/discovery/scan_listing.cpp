#include "discovery/scan_listing.h"

#include "platform/alias_file.h"
#include "platform/descriptor.h"
#include "platform/directory_reader.h"

#include <algorithm>
#include <vector>

namespace tessellar {

namespace {

using Candidate = AppScanner::TraversalCandidate;
using Unreadable = AppScanner::UnreadableDirectory;

/// Longer chains of aliases are not followed.
constexpr int maximumHops = 8;
/// The smallest (two headers) and the largest size of an alias file.
constexpr std::uint64_t smallestAlias = 64;
constexpr std::uint64_t largestAlias = 1u << 20;

Candidate directoryCandidate(const QString& path) {
    return {path, true, FileSystem::extension(path).compare(u"app", Qt::CaseInsensitive) == 0};
}

/// `path` does not exist. If that is because it leads to a volume that is not mounted, returns its
/// mount point. Links are followed as far as they lead.
std::optional<QString> missingVolume(const FileSystem& files, QString path) {
    for (int hop = 0; hop < maximumHops; ++hop) {
        path = FileSystem::standardized(path);
        if (const auto point = volumeMountPoint(path); point && !files.exists(*point))
            return point;
        // The deepest ancestor that exists, and the rest below it.
        QString existing = FileSystem::parent(path);
        QString rest = FileSystem::fileName(path);
        while (existing != u"/" && !files.exists(existing)) {
            rest = FileSystem::joined(FileSystem::fileName(existing), rest);
            existing = FileSystem::parent(existing);
        }
        const qsizetype slash = rest.indexOf(u'/');
        const QString missing = FileSystem::joined(existing, slash < 0 ? rest : rest.first(slash));
        const QString below = slash < 0 ? QString() : rest.sliced(slash + 1);
        const auto link = files.linkTarget(missing);
        if (!link) {
            const auto resolved = files.resolved(existing);
            if (!resolved)
                return std::nullopt;
            const auto point = volumeMountPoint(FileSystem::joined(*resolved, rest));
            return point && !files.exists(*point) ? point : std::nullopt;
        }
        if (!QByteArrayView(*link).isValidUtf8())
            return std::nullopt;
        const QString target = QString::fromUtf8(*link);
        path = FileSystem::joined(
            target.startsWith(u'/') ? target : FileSystem::joined(existing, target), below);
    }
    return std::nullopt;
}

/// Follows links and aliases from `path` to their target, recording each observation.
class Follower {
public:
    Follower(const ScanContext& context, ScanListing& listing)
        : _files(context.files), _now(context.now), _listing(listing) {}

    /// False if the target is missing, temporarily or for good, or is no folder.
    bool follow(const QString& path, bool isSearchPath) {
        QString at = path;
        for (int hop = 0; hop < maximumHops; ++hop) {
            const auto seen = note(ScanObservation::ofResolution(_files, at));
            if (!seen.found()) {
                fail(path, at, *seen.error, isSearchPath);
                return false;
            }
            if (seen.leadsToDirectory) {
                _listing.candidates.append(directoryCandidate(seen.target));
                return true;
            }
            const auto target = targetOfAlias(seen.target);
            if (!target)
                break;
            at = *target;
        }
        if (isSearchPath)
            _listing.unreadable.append({path, Unreadable::Reason::absent});
        return false;
    }

    /// The target of an alias file. Only aliases are observed again next time: a folder of a hundred
    /// thousand documents must cost no more than one call.
    std::optional<QString> targetOfAlias(const QString& path) {
        const auto seen = ScanObservation::ofStatus(_files, path);
        if (seen.hasFailed())
            addUnreadable(path);
        if (!seen.found() || seen.status.type != FileType::regular)
            return std::nullopt;
        bool isAlias = false;
        if (seen.status.size >= smallestAlias && seen.status.size <= largestAlias) {
            const auto look = isAliasFile(_files, path);
            if (!look && !isMissing(look.error().code))
                addUnreadable(path);
            isAlias = look.value_or(false);
        }
        if (!isAlias && seen.isSettled(_now))
            return std::nullopt;
        note(seen);
        auto target = isAlias ? aliasTarget(_files, path) : std::nullopt;
        if (isAlias && !target)
            addUnreadable(path);
        return target;
    }

private:
    ScanObservation note(ScanObservation observation) {
        _listing.evidence.observations.append(observation);
        return observation;
    }

    /// A file that might be an alias could not be read.
    void addUnreadable(const QString& path) {
        _listing.evidence.settled = false;
        _listing.unreadable.append({path, Unreadable::Reason::unreadable});
    }

    void fail(const QString& from, const QString& at, FileError::Code error, bool isSearchPath) {
        // No status tells whether a volume is missing or only a file on it: look again next time.
        _listing.evidence.settled = false;
        if (!isMissing(error)) {
            _listing.unreadable.append({FileSystem::standardized(at), Unreadable::Reason::unreadable});
            // Applications there are known by the link's target.
            if (const auto target = linkedPath(at))
                _listing.unreadable.append({*target, Unreadable::Reason::unreadable});
        } else if (const auto point = missingVolume(_files, at)) {
            _listing.unreadable.append({*point, Unreadable::Reason::volumeNotMounted});
        } else if (isSearchPath) {
            _listing.unreadable.append({from, Unreadable::Reason::absent});
        }
    }

    std::optional<QString> linkedPath(const QString& path) const {
        const auto link = _files.linkTarget(path);
        if (!link || !QByteArrayView(*link).isValidUtf8())
            return std::nullopt;
        const QString target = QString::fromUtf8(*link);
        return FileSystem::standardized(
            target.startsWith(u'/') ? target : FileSystem::joined(FileSystem::parent(path), target));
    }

    const FileSystem& _files;
    Instant _now;
    ScanListing& _listing;
};

struct Entry {
    QByteArray name;
    FileType type;
};

/// The visible entries whose names can be stored. Marks the listing if there are too many.
std::expected<std::vector<Entry>, FileError::Code> visibleEntries(const ScanContext& context,
                                                                  ScanListing& listing) {
    const auto directory = context.files.open(listing.path);
    if (!directory)
        return std::unexpected(directory.error().code);
    DirectoryReader reader;
    reader.begin(directory->get());
    std::vector<Entry> entries;
    for (;;) {
        const auto batch = reader.next();
        if (!batch)
            return std::unexpected(FileError::Code::io);
        if (batch->empty())
            break;
        listing.entryCount += static_cast<qsizetype>(batch->size());
        if (listing.entryCount > context.limits.entriesPerDirectory) {
            listing.unreadable.append({listing.path, Unreadable::Reason::limit});
            break;
        }
        for (const DirectoryReader::Entry& entry : *batch) {
            if (entry.type != FileType::other && entry.name[0] != '.' && entry.view().isValidUtf8())
                entries.push_back({entry.view().toByteArray(), entry.type});
        }
    }
    std::ranges::sort(entries, {}, &Entry::name);
    return entries;
}

} // namespace

bool ScanListing::sameFindings(const ScanListing& other) const {
    return listed == other.listed && candidates == other.candidates && unreadable == other.unreadable;
}

QSet<std::uint64_t> reliableDevices(const FileSystem& files, const QString& home) {
    QSet<std::uint64_t> result;
    for (const QString& path : {QStringLiteral("/"), home})
        if (const auto status = files.status(path))
            result.insert(status->device);
    return result;
}

ScanListing listDirectory(const ScanContext& context, const QSet<std::uint64_t>& reliableDevices,
                          const QString& path) {
    ScanListing listing;
    listing.path = path;
    const auto self = ScanObservation::ofStatus(context.files, path);
    listing.evidence.observations.append(self);
    if (self.found() && !self.isDirectory())
        return listing;
    const auto entries = visibleEntries(context, listing);
    if (!entries) {
        // Permissions can change without a change to the folder; and a folder that has just been listed
        // in its parent, but is gone now, is being replaced.
        listing.evidence.settled = false;
        listing.unreadable.append({path, Unreadable::Reason::unreadable});
        return listing;
    }
    listing.listed = true;

    Follower follower(context, listing);
    for (const Entry& entry : *entries) {
        const QString entryPath = FileSystem::joined(path, QString::fromUtf8(entry.name));
        if (entry.type == FileType::directory)
            listing.candidates.append(directoryCandidate(entryPath));
        else if (entry.type == FileType::symbolicLink)
            follower.follow(entryPath, false);
        else if (const auto target = follower.targetOfAlias(entryPath))
            follower.follow(*target, false);
    }
    listing.evidence.settle(context.now);
    if (!reliableDevices.contains(self.status.device))
        listing.evidence.settled = false;
    return listing;
}

ScanListing listSearchPaths(const ScanContext& context) {
    ScanListing listing;
    listing.listed = true;
    Follower follower(context, listing);
    for (const QString& path : context.settings.searchPaths)
        follower.follow(path, true);
    return listing;
}

} // namespace tessellar
