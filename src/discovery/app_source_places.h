#pragma once

#include "model/items.h"
#include "platform/file_system.h"

#include <QStringList>

namespace tessellar {

/// The folders by which the source of an application is told, as they are called and as they resolve.
struct AppSourcePlaces {
    QStringList system; ///< the system's own
    QStringList user;   ///< the home's Applications

    bool operator==(const AppSourcePlaces&) const = default;

    static AppSourcePlaces read(const FileSystem& files, const QString& home);
    /// `local` for all other places.
    AppSource sourceOf(const QString& path) const;
};

} // namespace tessellar
