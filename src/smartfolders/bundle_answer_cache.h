#pragma once

#include "platform/stored_file.h"
#include "smartfolders/bundle_tools.h"

#include <unordered_map>

namespace tessellar {

/// A file cache of tools' answers about bundles, valid as long as a bundle's fingerprint stays the
/// same, so that no tool runs for unchanged bundles at start-up. A damaged file is discarded and
/// rewritten.
///
/// Not thread-safe.
class BundleAnswerCache {
public:
    static constexpr qint64 supportedVersion = 1;
    static constexpr std::size_t maximumBundles = 20'000;
    static constexpr std::uint64_t maximumBytes = 16u << 20;

    /// An empty path disables the file.
    BundleAnswerCache(const FileSystem& files, const QString& path);

    void load();
    /// The cached answers for a bundle in this state.
    BundleAnswers answers(const QString& bundlePath, const QString& fingerprint) const;
    /// Stores the lasting answers.
    void keep(const QString& bundlePath, const QString& fingerprint, const BundleAnswers& answers);
    /// Writes changes since the last save. If there are too many bundles, drops those not looked up or
    /// stored in this run.
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
