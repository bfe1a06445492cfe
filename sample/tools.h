#pragma once

#include "sample/mac_builder.h"

#include <QJsonArray>

namespace tessellar::sample {

/// Stand-ins for the Mac's command-line tools: shell scripts in the places where the tools lie, that
/// answer in their form from small files under `MacBuilder::toolData()`. They find the Mac they belong
/// to by where they lie, so one machine may hold many Macs. Called with host paths, as anything that
/// leaves the launcher is, they answer with host paths; what they say of their own accord ("getconf",
/// "brew") are the Mac's paths.
///
/// In /usr/bin: codesign, getconf, lipo, mdls, open, osascript; in /bin: ps. What they answer of an
/// application comes with `addApplication`. In the tools' folder:
///   opened.log, quit.log  what was opened and which applications were asked to quit, a call a line
///                         with its arguments divided by tabs
///   running               what ps lists: lines of an identifier, a tab, the path of an executable
///                         and, where the application does not quit when it is asked, a tab and a word
///   finder/error          if there: osascript says this on standard error and exits with 1
///   finder/refused        lines of an error number, a tab and a path: what the Finder will not trash
void addTools(MacBuilder& mac);

/// A newer version that a stand-in updater can bring: the Info.plist to put in the bundle.
struct PendingUpdate {
    QString name; ///< cask token, or application code
    QString version;
    QString infoPath;
    QByteArray infoBytes;
};

/// One installed cask as `brew` tells of it.
struct Cask {
    QString token;
    QString tap = {}; ///< other than the main one, as "user/tap"
    QString version;
    QString installedVersion;
    std::optional<bool> autoUpdates = std::nullopt;
    QJsonArray artifacts = {};
    bool installedVersionsAsText = false; ///< as old versions list them
    std::optional<PendingUpdate> update = std::nullopt;
};

/// /opt/homebrew/bin/brew with these casks: "info", "outdated" and "upgrade", which takes a cask off
/// the outdated ones and brings its update. brew/error in the tools' folder makes every command fail.
void addHomebrew(MacBuilder& mac, const QList<Cask>& casks);

/// The vendor's updater whose tool is `msupdate`, with updates by application code.
void addMicrosoftUpdater(MacBuilder& mac, const QList<PendingUpdate>& updates);

} // namespace tessellar::sample
