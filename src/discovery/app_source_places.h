#pragma once

#include "model/items.h"
#include "platform/file_system.h"

#include <QStringList>

namespace tessellar {

/// The folders that determine an application's source, as written and resolved.
struct AppSourcePlaces {
    QStringList system; ///< the system's own
    QStringList user;   ///< the home's Applications

    bool operator==(const AppSourcePlaces&) const = default;

    static AppSourcePlaces read(const FileSystem& files, const QString& home);
    /// `local` for any other path.
    AppSource sourceOf(const QString& path) const;
};

} // namespace tessellar
