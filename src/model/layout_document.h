#pragma once

#include "model/items.h"

#include <QSet>

namespace tessellar {

/// The working layout of one display mode; also the contents of backups, saved arrangements and undo
/// snapshots. Copies share their pages.
struct LayoutDocument {
    /// The version written. Versions 1 and 2 are read the same way and upgraded.
    static constexpr int currentVersion = 3;
    static bool isSupported(int version) { return version >= 1 && version <= currentVersion; }

    int version = currentVersion;
    Pages pages;
    QSet<QString> hiddenKeys; ///< app keys of applications hidden from the grid

    bool operator==(const LayoutDocument&) const = default;
};

/// Limits on nesting and size, enforced on writing too, so that whatever was written can be read.
inline constexpr int maximumFolderDepth = 100;
inline constexpr std::uint64_t maximumLayoutBytes = 64u << 20;

/// The nesting of folders: 0 without folders, 1 if no folder contains another.
int folderDepth(const Pages& pages);

struct ItemCounts {
    qsizetype pages = 0;        ///< top-level pages
    qsizetype applications = 0; ///< at any depth, without alias tiles
    qsizetype folders = 0;      ///< folders and smart folders at any depth

    bool operator==(const ItemCounts&) const = default;
};
ItemCounts countItems(const Pages& pages);

/// A layout backed up before it was replaced as a whole.
struct BackupDocument {
    Instant createdAt;
    QString reason; ///< "arrangement-restore" or "legacy-launchpad-import"
    std::optional<QString> sourceDatabasePath;
    LayoutDocument document;

    bool operator==(const BackupDocument&) const = default;
};

/// A grid column for recently or most used applications.
struct SpecialColumn {
    bool isVisible = false;
    int columns = 1;
    QString placement = QStringLiteral("fixed"); ///< "fixed" or "firstPage"

    bool operator==(const SpecialColumn&) const = default;
};

/// In points.
struct WindowSize {
    double width = 0;
    double height = 0;

    bool operator==(const WindowSize&) const = default;
};

/// The grid and appearance settings when an arrangement was saved.
struct ArrangementLayout {
    int rows = 5;
    int columns = 8;
    double iconScale = 1;
    std::optional<double> tileLabelFontSize; ///< nullopt for the default
    double windowedIconSize = 64;
    double windowedHorizontalSpacing = 24;
    double windowedVerticalSpacing = 24;
    double folderIconSpacing = 24;
    double folderIconScale = 1;
    int folderRows = 3;
    int folderColumns = 5;
    SpecialColumn recents;
    SpecialColumn mostUsed;
    std::optional<WindowSize> windowSize;

    bool operator==(const ArrangementLayout&) const = default;
};

/// A named arrangement saved by the user, in a file named by its identifier.
struct Arrangement {
    QUuid id;
    QString name;
    Instant createdAt;
    LayoutDocument document;
    int pageCount = 0;
    int appCount = 0;
    int folderCount = 0;
    std::optional<ArrangementLayout> layout; ///< missing in older files

    bool operator==(const Arrangement&) const = default;
};

/// A saved arrangement as shown in a list.
struct ArrangementSummary {
    QUuid id;
    QString name;
    Instant createdAt;
    int pageCount = 0;
    int appCount = 0;
    int folderCount = 0;

    bool operator==(const ArrangementSummary&) const = default;
};

namespace json {

/// Sorted, so that equal sets encode to equal bytes.
template <>
struct Codec<QSet<QString>> {
    static Decoded<QSet<QString>> decode(const QJsonValue& value);
    static QJsonValue encode(const QSet<QString>& set);
};

template <>
struct Fields<LayoutDocument> {
    static constexpr auto list =
        fields(required("version", &LayoutDocument::version), required("pages", &LayoutDocument::pages),
               required("hiddenKeys", &LayoutDocument::hiddenKeys));
};
template <>
struct Fields<BackupDocument> {
    static constexpr auto list =
        fields(required<Iso8601>("createdAt", &BackupDocument::createdAt),
               required("reason", &BackupDocument::reason),
               optional("sourceDatabasePath", &BackupDocument::sourceDatabasePath),
               required("document", &BackupDocument::document));
};
template <>
struct Fields<SpecialColumn> {
    static constexpr auto list = fields(required("isVisible", &SpecialColumn::isVisible),
                                        required("columns", &SpecialColumn::columns),
                                        required("placement", &SpecialColumn::placement));
};
template <>
struct Fields<WindowSize> {
    static constexpr auto list =
        fields(required("width", &WindowSize::width), required("height", &WindowSize::height));
};
template <>
struct Fields<ArrangementLayout> {
    using L = ArrangementLayout;
    static constexpr auto list = fields(
        required("rows", &L::rows), required("columns", &L::columns),
        required("iconScale", &L::iconScale), optional("tileLabelFontSize", &L::tileLabelFontSize),
        required("windowedIconSize", &L::windowedIconSize),
        required("windowedHorizontalSpacing", &L::windowedHorizontalSpacing),
        required("windowedVerticalSpacing", &L::windowedVerticalSpacing),
        required("folderIconSpacing", &L::folderIconSpacing),
        required("folderIconScale", &L::folderIconScale), required("folderRows", &L::folderRows),
        required("folderColumns", &L::folderColumns), required("recents", &L::recents),
        required("mostUsed", &L::mostUsed), optional("windowSize", &L::windowSize));
};
template <>
struct Fields<Arrangement> {
    static constexpr auto list = fields(
        required("id", &Arrangement::id), required("name", &Arrangement::name),
        required<Iso8601>("createdAt", &Arrangement::createdAt),
        required("document", &Arrangement::document), required("pageCount", &Arrangement::pageCount),
        required("appCount", &Arrangement::appCount),
        required("folderCount", &Arrangement::folderCount), optional("layout", &Arrangement::layout));
};
template <>
struct Fields<ArrangementSummary> {
    using S = ArrangementSummary;
    static constexpr auto list =
        fields(required("id", &S::id), required("name", &S::name),
               required<Iso8601>("createdAt", &S::createdAt), required("pageCount", &S::pageCount),
               required("appCount", &S::appCount), required("folderCount", &S::folderCount));
};

} // namespace json
} // namespace tessellar
