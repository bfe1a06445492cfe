#include "launcher/app_information.h"

#include "launcher/date_text.h"
#include "smartfolders/smart_folder_raw_values.h"
#include "smartfolders/smart_folder_words.h"

#include <QLocale>

namespace tessellar {

namespace {

using Rows = QList<InformationRow>;

std::optional<QString> yesOrNo(const std::optional<bool>& value) {
    return value ? std::optional(*value ? QStringLiteral("Yes") : QStringLiteral("No")) : std::nullopt;
}

/// A word of the vocabulary of smart folders, as their editor has it.
template <typename Word>
QString wordText(Word word) {
    return smartFolderTitle(json::rawValue(word));
}
template <typename Word>
std::optional<QString> wordText(const std::optional<Word>& word) {
    return word ? std::optional(wordText(*word)) : std::nullopt;
}

QString signatureText(CodeSignature signature) {
    switch (signature) {
    case CodeSignature::none:
        return QStringLiteral("Not signed");
    case CodeSignature::adHoc:
        return QStringLiteral("Signed by nobody (ad hoc)");
    case CodeSignature::developerId:
        return QStringLiteral("Developer ID");
    case CodeSignature::appStore:
        return QStringLiteral("App Store");
    case CodeSignature::apple:
        return QStringLiteral("Apple");
    case CodeSignature::other:
        break;
    }
    return QStringLiteral("Another certificate");
}

/// What Apple signs itself it does not notarize as well.
std::optional<QString> notarization(const CodeFindings& code) {
    const bool isApples =
        code.signature == CodeSignature::apple || code.signature == CodeSignature::appStore;
    return isApples && !code.isNotarized ? std::optional(QStringLiteral("Not needed"))
                                         : yesOrNo(code.isNotarized);
}

/// What of an application is told where; in the order in which people look for it.
class Writer {
public:
    Writer(const AppInformation& information, const Locale& locale)
        : _about(information)
        , _facts(information.facts)
        , _locale(locale)
        , _numbers(locale.identifier()) {}

    Rows general() const {
        const AppEntry& entry = _facts.entry;
        Rows rows{{QStringLiteral("Name"), entry.name}};
        if (entry.originalName != entry.name)
            rows.append({QStringLiteral("Calls Itself"), entry.originalName});
        if (!_about.isInstalled)
            rows.append({QStringLiteral("Installed"), QStringLiteral("Not found where it was")});
        if (_about.isHidden)
            rows.append({QStringLiteral("Shown"), QStringLiteral("Hidden from the pages")});
        rows.append(
            {fact("Version", _facts.version), fact("Build", _facts.build),
             fact("Bundle Identifier", entry.bundleIdentifier),
             fact("Category",
                  entry.category
                      ? std::optional(categoryDisplayName(*entry.category).value_or(*entry.category))
                      : std::nullopt),
             row("Size", sizeText(), _about.pending.size)});
        rows.append({QStringLiteral("Where"), entry.path, true, entry.path});
        for (const QString& path : _about.copies)
            rows.append({QStringLiteral("Another Copy"), path, true, path});
        return rows;
    }

    Rows origin() const {
        return {fact("Installed From", isBuiltIn(_facts.entry.path)
                                           ? std::optional(QStringLiteral("It comes with macOS"))
                                           : wordText(_facts.installSource)),
                fact("Developer", _facts.developer),
                fact("Publisher", _facts.publisher),
                fact("Built For", wordText(_facts.platform)),
                fact("Architectures", architectures()),
                fact("Minimum macOS", _facts.minimumMacOSVersion)};
    }

    Rows security() const {
        const CodeFindings& code = _about.code;
        const bool isPending = _about.pending.code;
        QStringList permissions;
        for (const SmartFolderPermission permission : _facts.declaredPermissions)
            permissions.append(wordText(permission));
        return {row("Signature",
                    code.signature ? std::optional(signatureText(*code.signature)) : std::nullopt,
                    isPending),
                code.signature == CodeSignature::none || code.signature == CodeSignature::apple
                    ? InformationRow{QStringLiteral("Team"), QStringLiteral("None")}
                    : fact("Team", _facts.signingTeamID),
                row("Hardened Runtime", yesOrNo(code.isHardened), isPending),
                row("Notarized", notarization(code), isPending),
                row("Sandboxed", yesOrNo(code.isSandboxed), isPending),
                fact("May Ask For", !_about.isInstalled ? std::nullopt
                                    : permissions.isEmpty()
                                        ? std::optional(QStringLiteral("Nothing that it declares"))
                                        : std::optional(permissions.join(QStringLiteral(", "))))};
    }

    Rows updates() const {
        const AppUpdateSourceText& source = _about.updateSource;
        const bool isPending = _about.pending.updates;
        const auto& update = _about.update;
        Rows rows{row("Come From", comeFrom(), isPending)};
        if (!source.explanation.isEmpty())
            rows.append({QString(), source.explanation});
        if (!source.label.isEmpty())
            rows.append({QStringLiteral("Evidence"), source.label});
        rows.append(row("State", update ? std::optional(update_texts::status(*update)) : notChecked(),
                        isPending));
        rows.append(row("Last Checked",
                        update ? std::optional(dateText(update->checkedAt, _locale)) : never(),
                        isPending));
        return rows;
    }

    Rows use() const {
        return {fact("Added", date(_facts.installedDate)),
                row("Modified", date(_about.modifiedDate), _about.pending.size),
                fact("First Seen", date(_facts.firstSeenDate)),
                fact("Last Used", _facts.isNeverUsed == true ? never() : date(_facts.lastUsedDate)),
                fact("Opened", timesOpened()),
                row("Smart Folders",
                    _about.pending.smartFolders     ? std::nullopt
                    : _about.smartFolders.isEmpty() ? std::optional(QStringLiteral("None shows it"))
                                                    : std::optional(_about.smartFolders.join(u'\n')),
                    _about.pending.smartFolders)};
    }

private:
    /// Of what may be unknown, or still on its way.
    static InformationRow row(const char* label, const std::optional<QString>& text, bool isPending) {
        return {.label = QString::fromLatin1(label),
                .text = text        ? *text
                        : isPending ? QStringLiteral("…")
                                    : QStringLiteral("Unknown"),
                .isKnown = text.has_value()};
    }
    InformationRow fact(const char* label, const std::optional<QString>& text) const {
        return row(label, text, _about.pending.facts);
    }

    static std::optional<QString> never() { return QStringLiteral("Never"); }
    static std::optional<QString> notChecked() { return QStringLiteral("Not checked yet"); }
    std::optional<QString> date(const std::optional<Instant>& instant) const {
        return instant ? std::optional(dateText(*instant, _locale)) : std::nullopt;
    }
    std::optional<QString> sizeText() const {
        if (!_about.size)
            return std::nullopt;
        const QString text = _numbers.formattedDataSize(*_about.size, 1, QLocale::DataSizeSIFormat);
        return _about.isSizeWhole ? text : QStringLiteral("At least %1").arg(text);
    }
    std::optional<QString> architectures() const {
        if (!_facts.architectures)
            return std::nullopt;
        QStringList words;
        for (const QString& name : *_facts.architectures)
            words.append(smartFolderTitle(name));
        return words.join(QStringLiteral(", "));
    }
    std::optional<QString> comeFrom() const {
        if (!_about.updateSource.source.isEmpty())
            return _about.updateSource.source;
        if (const auto* cask =
                _about.channel ? std::get_if<HomebrewCaskChannel>(&*_about.channel) : nullptr)
            return QStringLiteral("Homebrew (%1)").arg(cask->token);
        if (_facts.distributionChannel == SmartFolderDistributionChannel::unsupported)
            return QStringLiteral("Nowhere that is known");
        return wordText(_facts.distributionChannel);
    }
    std::optional<QString> timesOpened() const {
        if (!_facts.launchCount)
            return std::nullopt;
        return *_facts.launchCount == 0 ? never()
               : *_facts.launchCount == 1
                   ? QStringLiteral("Once from here")
                   : QStringLiteral("%1 times from here").arg(_numbers.toString(*_facts.launchCount));
    }

    const AppInformation& _about;
    const SmartFolderAppFacts& _facts;
    const Locale& _locale;
    QLocale _numbers;
};

} // namespace

QList<InformationSection> informationSections(const AppInformation& information, const Locale& locale) {
    const Writer writer(information, locale);
    return {{QStringLiteral("General"), writer.general()},
            {QStringLiteral("Origin"), writer.origin()},
            {QStringLiteral("Security"), writer.security()},
            {QStringLiteral("Updates"), writer.updates()},
            {QStringLiteral("Use"), writer.use()}};
}

} // namespace tessellar
