#pragma once

#include "sample/icon_artist.h"

#include <span>

namespace tessellar::sample {

/// How an application of the demonstration Mac came onto it, and by what it is updated.
enum class Kind {
    system,    ///< in "/System/Applications"
    utility,   ///< in its "Utilities"
    cryptex,   ///< where the Mac keeps its browser
    sparkle,   ///< declares a feed
    store,     ///< from the App Store
    wrapped,   ///< an iPhone's application from the App Store
    homebrew,  ///< owned by a cask
    microsoft, ///< updated by the vendor's common updater
    keystone,  ///< declares the other common updater's address
    developer, ///< signed, updates by itself
    adHoc,     ///< built on some machine, unsigned or signed for itself
    user,      ///< in the home's "Applications"
};

struct Vendor {
    const char* name;   ///< in signatures
    const char* team;   ///< ten letters and digits
    const char* prefix; ///< of its bundle identifiers
    const char* rights; ///< its notice, %1 stands for the year
};

struct CatalogEntry {
    const char* name;
    Kind kind;
    int vendor;             ///< among `vendors()`; unused for what belongs to the system
    const char* identifier; ///< after the vendor's prefix; the whole where it holds a full stop
    const char* category;   ///< after "public.app-category."; empty for none
    IconDesign icon;
};

std::span<const Vendor> vendors();
/// About 130 applications, of every kind.
std::span<const CatalogEntry> catalog();

} // namespace tessellar::sample
