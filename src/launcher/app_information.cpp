#include "launcher/app_information.h"

#include "launcher/date_text.h"
#include "platform/texts.h"
#include "smartfolders/smart_folder_raw_values.h"
#include "smartfolders/smart_folder_words.h"

#include <QLocale>

namespace tessellar {

namespace {

using Rows = QList<InformationRow>;

std::optional<QString> yesOrNo(const std::optional<bool>& value) {
    return value ? std::optional(*value ? Texts::tr("Yes") : Texts::tr("No")) : std::nullopt;
}

/// A word of the smart folders' vocabulary, as their editor shows it.
template <typename Word>
QString wordText(Word word) {
    return smartFolderText(json::rawValue(word));
}
template <typename Word>
std::optional<QString> wordText(const std::optional<Word>& word) {
    return word ? std::optional(wordText(*word)) : std::nullopt;
}

QString signatureText(CodeSignature signature) {
    switch (signature) {
    case CodeSignature::none:
        return Texts::tr("Not signed");
    case CodeSignature::adHoc:
        return Texts::tr("Signed by nobody (ad hoc)");
    case CodeSignature::developerId:
        return QStringLiteral("Developer ID");
    case CodeSignature::appStore:
        return QStringLiteral("App Store");
    case CodeSignature::apple:
        return QStringLiteral("Apple");
    case CodeSignature::other:
        break;
    }
    return Texts::tr("Another certificate");
}

/// Apple does not notarize what it signs itself.
std::optional<QString> notarization(const CodeFindings& code) {
    const bool isApples =
        code.signature == CodeSignature::apple || code.signature == CodeSignature::appStore;
    return isApples && !code.isNotarized ? std::optional(Texts::tr("Not needed"))
                                         : yesOrNo(code.isNotarized);
}

/// Arranges the information in sections, in the order in which people look for it.
class Writer {
public:
    Writer(const AppInformation& information, const Locale& locale)
        : _about(information)
        , _facts(information.facts)
        , _locale(locale)
        , _numbers(locale.identifier()) {}

    Rows general() const {
        const AppEntry& entry = _facts.entry;
        Rows rows{{Texts::tr("Name"), entry.name}};
        if (entry.originalName != entry.name)
            rows.append({Texts::tr("Calls Itself"), entry.originalName});
        if (!_about.isInstalled)
            rows.append({Texts::tr("Installed"), Texts::tr("Not found where it was")});
        if (_about.isHidden)
            rows.append({Texts::tr("Shown"), Texts::tr("Hidden from the pages")});
        rows.append(
            {fact(Texts::noop("Version"), _facts.version), fact(Texts::noop("Build"), _facts.build),
             fact(Texts::noop("Bundle Identifier"), entry.bundleIdentifier),
             fact(Texts::noop("Category"),
                  entry.category
                      ? std::optional(categoryDisplayName(*entry.category).value_or(*entry.category))
                      : std::nullopt),
             row(Texts::noop("Size"), sizeText(), _about.pending.size)});
        rows.append({Texts::tr("Where"), entry.path, true, entry.path});
        for (const QString& path : _about.copies)
            rows.append({Texts::tr("Another Copy"), path, true, path});
        return rows;
    }

    Rows origin() const {
        return {fact(Texts::noop("Installed From"),
                     isBuiltIn(_facts.entry.path) ? std::optional(Texts::tr("It comes with macOS"))
                                                  : wordText(_facts.installSource)),
                fact(Texts::noop("Developer"), _facts.developer),
                fact(Texts::noop("Publisher"), _facts.publisher),
                fact(Texts::noop("Built For"), wordText(_facts.platform)),
                fact(Texts::noop("Architectures"), architectures()),
                fact(Texts::noop("Minimum macOS"), _facts.minimumMacOSVersion)};
    }

    Rows security() const {
        const CodeFindings& code = _about.code;
        const bool isPending = _about.pending.code;
        QStringList permissions;
        for (const SmartFolderPermission permission : _facts.declaredPermissions)
            permissions.append(wordText(permission));
        return {row(Texts::noop("Signature"),
                    code.signature ? std::optional(signatureText(*code.signature)) : std::nullopt,
                    isPending),
                code.signature == CodeSignature::none || code.signature == CodeSignature::apple
                    ? InformationRow{Texts::tr("Team"), Texts::tr("None")}
                    : fact(Texts::noop("Team"), _facts.signingTeamID),
                row(Texts::noop("Hardened Runtime"), yesOrNo(code.isHardened), isPending),
                row(Texts::noop("Notarized"), notarization(code), isPending),
                row(Texts::noop("Sandboxed"), yesOrNo(code.isSandboxed), isPending),
                fact(Texts::noop("May Ask For"),
                     !_about.isInstalled     ? std::nullopt
                     : permissions.isEmpty() ? std::optional(Texts::tr("Nothing that it declares"))
                                             : std::optional(permissions.join(QStringLiteral(", "))))};
    }

    Rows updates() const {
        const AppUpdateSourceText& source = _about.updateSource;
        const bool isPending = _about.pending.updates;
        const auto& update = _about.update;
        Rows rows{row(Texts::noop("Come From"), comeFrom(), isPending)};
        if (!source.explanation.isEmpty())
            rows.append({QString(), source.explanation});
        if (!source.label.isEmpty())
            rows.append({Texts::tr("Evidence"), source.label});
        rows.append(row(Texts::noop("State"),
                        update ? std::optional(update_texts::status(*update)) : notChecked(),
                        isPending));
        rows.append(row(Texts::noop("Last Checked"),
                        update ? std::optional(dateText(update->checkedAt, _locale)) : never(),
                        isPending));
        return rows;
    }

    Rows use() const {
        return {fact(Texts::noop("Added"), date(_facts.installedDate)),
                row(Texts::noop("Modified"), date(_about.modifiedDate), _about.pending.size),
                fact(Texts::noop("First Seen"), date(_facts.firstSeenDate)),
                fact(Texts::noop("Last Used"),
                     _facts.isNeverUsed == true ? never() : date(_facts.lastUsedDate)),
                fact(Texts::noop("Opened"), timesOpened()),
                row(Texts::noop("Smart Folders"),
                    _about.pending.smartFolders     ? std::nullopt
                    : _about.smartFolders.isEmpty() ? std::optional(Texts::tr("None shows it"))
                                                    : std::optional(_about.smartFolders.join(u'\n')),
                    _about.pending.smartFolders)};
    }

private:
    /// For values that may be unknown or pending.
    static InformationRow row(const char* label, const std::optional<QString>& text, bool isPending) {
        return {.label = Texts::tr(label),
                .text = text        ? *text
                        : isPending ? QStringLiteral("…")
                                    : Texts::tr("Unknown"),
                .isKnown = text.has_value()};
    }
    InformationRow fact(const char* label, const std::optional<QString>& text) const {
        return row(label, text, _about.pending.facts);
    }

    static std::optional<QString> never() { return Texts::tr("Never"); }
    static std::optional<QString> notChecked() { return Texts::tr("Not checked yet"); }
    std::optional<QString> date(const std::optional<Instant>& instant) const {
        return instant ? std::optional(dateText(*instant, _locale)) : std::nullopt;
    }
    std::optional<QString> sizeText() const {
        if (!_about.size)
            return std::nullopt;
        const QString text = _numbers.formattedDataSize(*_about.size, 1, QLocale::DataSizeSIFormat);
        return _about.isSizeWhole ? text : Texts::tr("At least %1").arg(text);
    }
    std::optional<QString> architectures() const {
        if (!_facts.architectures)
            return std::nullopt;
        QStringList words;
        for (const QString& name : *_facts.architectures)
            words.append(smartFolderText(name));
        return words.join(QStringLiteral(", "));
    }
    std::optional<QString> comeFrom() const {
        if (!_about.updateSource.source.isEmpty())
            return _about.updateSource.source;
        if (const auto* cask =
                _about.channel ? std::get_if<HomebrewCaskChannel>(&*_about.channel) : nullptr)
            return QStringLiteral("Homebrew (%1)").arg(cask->token);
        if (_facts.distributionChannel == SmartFolderDistributionChannel::unsupported)
            return Texts::tr("Nowhere that is known");
        return wordText(_facts.distributionChannel);
    }
    std::optional<QString> timesOpened() const {
        if (!_facts.launchCount)
            return std::nullopt;
        return *_facts.launchCount == 0 ? never()
               : *_facts.launchCount == 1
                   ? Texts::tr("Once from here")
                   : Texts::tr("%1 times from here").arg(_numbers.toString(*_facts.launchCount));
    }

    const AppInformation& _about;
    const SmartFolderAppFacts& _facts;
    const Locale& _locale;
    QLocale _numbers;
};

} // namespace

QList<InformationSection> informationSections(const AppInformation& information, const Locale& locale) {
    const Writer writer(information, locale);
    return {{Texts::tr("General"), writer.general()},
            {Texts::tr("Origin"), writer.origin()},
            {Texts::tr("Security"), writer.security()},
            {Texts::tr("Updates"), writer.updates()},
            {Texts::tr("Use"), writer.use()}};
}

} // namespace tessellar
