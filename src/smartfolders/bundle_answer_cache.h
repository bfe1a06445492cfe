#pragma once

#include "platform/stored_file.h"
#include "smartfolders/bundle_tools.h"

#include <unordered_map>

namespace tessellar {

/// What tools said of bundles, kept between runs in a file: an answer counts as long as the bundle's
/// fingerprint is the one that it was given for, so that a start asks no tool about unchanged bundles.
/// A cache: a file that is damaged is as good as none, and is written anew.
///
/// One thread at a time.
class BundleAnswerCache {
public:
    static constexpr qint64 supportedVersion = 1;
    static constexpr std::size_t maximumBundles = 20'000;
    static constexpr std::uint64_t maximumBytes = 16u << 20;

    /// Without a path nothing is kept.
    BundleAnswerCache(const FileSystem& files, const QString& path);

    void load();
    /// What is known of a bundle in this state.
    BundleAnswers answers(const QString& bundlePath, const QString& fingerprint) const;
    /// Keeps those answers that last.
    void keep(const QString& bundlePath, const QString& fingerprint, const BundleAnswers& answers);
    /// Writes what has changed since the last save; where there are too many bundles, those without
    /// which were not kept or found in this run.
    std::expected<void, FileError> save();

private:
    struct Kept {
        QString fingerprint;
        BundleAnswers answers;
        mutable bool isInUse = false;
    };

    std::optional<StoredFile> _file;
    std::unordered_map<QString, Kept> _bundles;
    bool _isChanged = false;
};

} // namespace tessellar
