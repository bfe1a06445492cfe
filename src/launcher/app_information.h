#pragma once

#include "model/items.h"
#include "smartfolders/code_findings.h"
#include "smartfolders/smart_folder_app_facts.h"
#include "updates/app_update_records.h"
#include "updates/app_update_texts.h"

namespace tessellar {

/// Everything known about one application, for the information panel and the command line. Missing
/// values are unknown, or still being gathered if `pending` says so.
struct AppInformation {
    struct Pending {
        bool facts = true;
        bool size = true;
        bool code = true;
        bool updates = true;
        bool smartFolders = true;

        bool any() const { return facts || size || code || updates || smartFolders; }
        bool operator==(const Pending&) const = default;
    };

    SmartFolderAppFacts facts;
    bool isInstalled = true; ///< if false, only its tile's data is known
    bool isHidden = false;
    std::optional<qint64> size; ///< bytes on disk
    bool isSizeWhole = true;    ///< if false, `size` is a minimum
    std::optional<Instant> modifiedDate;
    CodeFindings code;
    std::optional<AppUpdateChannel> channel;
    AppUpdateSourceText updateSource;
    std::optional<AppUpdateRecord> update;
    QStringList smartFolders; ///< names of those containing it
    QStringList copies;       ///< paths of other applications with the same identifier
    Pending pending;          ///< not encoded

    const AppEntry& entry() const { return facts.entry; }
    bool operator==(const AppInformation&) const = default;
};

/// One line about an application.
struct InformationRow {
    QString label;
    QString text;        ///< several values on separate lines
    bool isKnown = true; ///< if false, the text says that it is unknown or pending
    QString path = {};   ///< can be revealed; empty if none

    bool operator==(const InformationRow&) const = default;
};
struct InformationSection {
    QString title;
    QList<InformationRow> rows;

    bool operator==(const InformationSection&) const = default;
};

/// Display texts, with localized dates and numbers.
QList<InformationSection> informationSections(const AppInformation& information, const Locale& locale);

namespace json {

template <>
struct Fields<AppUpdateSourceText> {
    using S = AppUpdateSourceText;
    static constexpr auto list = fields(defaulted("explanation", &S::explanation),
                                        defaulted("label", &S::label), defaulted("source", &S::source));
};
template <>
struct Fields<AppInformation> {
    using I = AppInformation;
    static constexpr auto list =
        fields(required("facts", &I::facts), required("isInstalled", &I::isInstalled),
               required("isHidden", &I::isHidden), optional("size", &I::size),
               defaulted("isSizeWhole", &I::isSizeWhole), optional("modifiedDate", &I::modifiedDate),
               required("code", &I::code), optional("channel", &I::channel),
               required("updateSource", &I::updateSource), optional("update", &I::update),
               required("smartFolders", &I::smartFolders), required("copies", &I::copies));
};

} // namespace json
} // namespace tessellar
