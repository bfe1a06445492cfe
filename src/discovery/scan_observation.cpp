#include "discovery/scan_observation.h"

#include <algorithm>

namespace tessellar {

namespace {

constexpr std::chrono::seconds settlingTime{3};

bool looksUnchanged(const FileStatus& a, const FileStatus& b) {
    return a.changed == b.changed && a.modified == b.modified && a.inode == b.inode &&
           a.device == b.device && a.size == b.size && a.type == b.type;
}

} // namespace

bool isMissing(FileError::Code code) {
    using enum FileError::Code;
    return code == notFound || code == notADirectory || code == linkLoop || code == badPath;
}

ScanObservation ScanObservation::ofStatus(const FileSystem& files, const QString& path) {
    ScanObservation result{.kind = Kind::status, .path = path};
    if (auto status = files.status(path))
        result.status = *std::move(status);
    else
        result.error = status.error().code;
    return result;
}

ScanObservation ScanObservation::ofResolution(const FileSystem& files, const QString& path) {
    ScanObservation result{.kind = Kind::resolution, .path = path};
    auto target = files.resolved(path);
    if (!target) {
        result.error = target.error().code;
        return result;
    }
    const auto status = files.status(*target);
    if (!status) {
        result.error = status.error().code;
        return result;
    }
    result.target = *std::move(target);
    result.leadsToDirectory = status->type == FileType::directory;
    return result;
}

bool ScanObservation::holds(const FileSystem& files) const {
    if (kind == Kind::status) {
        const auto now = files.status(path);
        return now ? found() && looksUnchanged(*now, status) : error == now.error().code;
    }
    const ScanObservation now = ofResolution(files, path);
    return now.error == error && now.target == target && now.leadsToDirectory == leadsToDirectory;
}

bool ScanObservation::isSettled(Instant now) const {
    const Instant latest = now - settlingTime;
    return kind != Kind::status || !found() || (status.changed < latest && status.modified < latest);
}

bool ScanEvidence::holds(const FileSystem& files) const {
    return settled && std::ranges::all_of(observations, [&](const ScanObservation& observation) {
               return observation.holds(files);
           });
}

void ScanEvidence::settle(Instant now) {
    settled = settled && std::ranges::all_of(observations, [&](const ScanObservation& observation) {
                  return observation.isSettled(now);
              });
}

} // namespace tessellar
