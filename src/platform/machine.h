#pragma once

#include "platform/clock.h"
#include "platform/file_system.h"
#include "platform/http.h"
#include "platform/log.h"
#include "platform/process.h"
#include "platform/scheduler.h"
#include "platform/settings.h"
#include "platform/text.h"
#include "platform/uuid_source.h"
#include "platform/worker_pool.h"

#include <map>

namespace tessellar {

/// The application's bundle identifier, on every platform.
inline const QString applicationIdentifier = QStringLiteral("com.tessellar.app");

/// The user's folders, under the file system's root.
struct Places {
    QString home;
    QString applicationSupport; ///< parent of the application's folder

    QString library() const { return FileSystem::joined(home, QStringLiteral("Library")); }
    QString applicationFolder() const {
        return FileSystem::joined(applicationSupport, applicationIdentifier);
    }
};

/// The launcher's interface to the machine. Created once at start-up; must outlive everything that
/// refers to it. Tests build one from fakes.
struct Machine {
    const FileSystem& files;
    Places places;
    const Clock& clock;
    Scheduler& scheduler;
    WorkerPool& workers;
    CommandRunner& commands;
    HttpClient& http;
    Settings& settings;
    UuidSource& uuids;
    Log& log;
    Locale locale;
    std::map<QByteArray, QByteArray> environment;
};

} // namespace tessellar
