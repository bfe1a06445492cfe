#pragma once

#include "model/items.h"
#include "smartfolders/code_findings.h"
#include "smartfolders/smart_folder_app_facts.h"
#include "updates/app_update_records.h"
#include "updates/app_update_texts.h"

namespace tessellar {

/// All that can be said of one application, as far as it is known: the panel about it shows it, and a
/// command prints it. What is missing is unknown, or still awaited where `pending` says so.
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
    bool isInstalled = true; ///< else no more is known than its tile tells
    bool isHidden = false;
    std::optional<qint64> size; ///< in bytes, on the disk
    bool isSizeWhole = true;    ///< else it is at least so much
    std::optional<Instant> modifiedDate;
    CodeFindings code;
    std::optional<AppUpdateChannel> channel;
    AppUpdateSourceText updateSource;
    std::optional<AppUpdateRecord> update;
    QStringList smartFolders; ///< the names of those that show it
    QStringList copies;       ///< the paths of other applications with its bundle identifier
    Pending pending;          ///< not in files

    const AppEntry& entry() const { return facts.entry; }
    bool operator==(const AppInformation&) const = default;
};

/// A line about an application.
struct InformationRow {
    QString label;
    QString text;        ///< of several things, one a line
    bool isKnown = true; ///< else the text says that it is not, or not yet
    QString path = {};   ///< of what can be revealed

    bool operator==(const InformationRow&) const = default;
};
struct InformationSection {
    QString title;
    QList<InformationRow> rows;

    bool operator==(const InformationSection&) const = default;
};

/// What people read, in the user's own form of dates and numbers.
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
