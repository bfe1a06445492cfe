#include "smartfolders/bundle_answer_cache.h"

#include "model/json_file.h"

namespace tessellar {

namespace {

/// One bundle's answers. An empty list or signature means that the tool gave no answer.
struct Record {
    QString fingerprint;
    std::optional<QStringList> architectures;
    std::optional<SignatureFindings> signature;
};

struct CacheDocument {
    static constexpr qint64 supportedVersion = BundleAnswerCache::supportedVersion;
    qint64 version = supportedVersion;
    QMap<QString, Record> bundles;
};

} // namespace

namespace json {

template <>
struct Fields<SignatureFindings> {
    using S = SignatureFindings;
    static constexpr auto list =
        fields(optional("developer", &S::developer), optional("teamID", &S::teamID));
};
template <>
struct Fields<Record> {
    static constexpr auto list = fields(required("fingerprint", &Record::fingerprint),
                                        optional("architectures", &Record::architectures),
                                        optional("signature", &Record::signature));
};
template <>
struct Fields<CacheDocument> {
    static constexpr auto list = fields(required("version", &CacheDocument::version),
                                        required("bundles", &CacheDocument::bundles));
};

} // namespace json

BundleAnswerCache::BundleAnswerCache(const FileSystem& files, const QString& path) {
    if (!path.isEmpty())
        _file.emplace(files, path, maximumBytes);
}

void BundleAnswerCache::load() {
    if (!_file)
        return;
    const auto loaded = loadJson<CacheDocument>(*_file);
    if (!loaded || !*loaded)
        return;
    const std::optional<CacheDocument>& document = *loaded;
    for (auto it = document->bundles.cbegin(); it != document->bundles.cend(); ++it) {
        Kept kept{.fingerprint = it->fingerprint};
        if (const auto& names = it->architectures)
            kept.answers.architectures.emplace(names->isEmpty() ? std::nullopt : names);
        if (const auto& signature = it->signature)
            kept.answers.signature.emplace(*signature);
        _bundles.insert_or_assign(it.key(), std::move(kept));
    }
}

BundleAnswers BundleAnswerCache::answers(const QString& bundlePath, const QString& fingerprint) const {
    const auto found = _bundles.find(bundlePath);
    if (found == _bundles.end() || found->second.fingerprint != fingerprint)
        return {};
    found->second.isInUse = true;
    return found->second.answers;
}

void BundleAnswerCache::keep(const QString& bundlePath, const QString& fingerprint,
                             const BundleAnswers& answers) {
    Kept kept{.fingerprint = fingerprint, .isInUse = true};
    if (answers.architectures && answers.architectures->isCacheable)
        kept.answers.architectures = answers.architectures;
    if (answers.signature && answers.signature->isCacheable)
        kept.answers.signature = answers.signature;
    if (kept.answers == BundleAnswers())
        return;
    _bundles.insert_or_assign(bundlePath, std::move(kept));
    _isChanged = true;
}

std::expected<void, FileError> BundleAnswerCache::save() {
    if (!_file || _file->blocked() || !_isChanged)
        return {};
    if (_bundles.size() > maximumBundles)
        std::erase_if(_bundles, [](const auto& each) { return !each.second.isInUse; });
    if (_bundles.size() > maximumBundles)
        _bundles.clear();
    CacheDocument document;
    for (const auto& [path, kept] : _bundles) {
        Record record{.fingerprint = kept.fingerprint};
        if (const auto& answer = kept.answers.architectures)
            record.architectures = answer->findings.value_or(QStringList());
        if (const auto& answer = kept.answers.signature)
            record.signature = answer->findings.value_or(SignatureFindings());
        document.bundles.insert(path, std::move(record));
    }
    const auto written = saveJson(*_file, document);
    _isChanged = !written;
    return written;
}

} // namespace tessellar
