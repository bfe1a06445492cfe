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

/// The application's bundle identifier wherever it runs.
inline const QString applicationIdentifier = QStringLiteral("com.tessellar.app");

/// The folders of the user on this machine, under the file system's root.
struct Places {
    QString home;
    QString applicationSupport; ///< the application's folder lies in it, named by its identifier

    QString library() const { return FileSystem::joined(home, QStringLiteral("Library")); }
    QString applicationFolder() const {
        return FileSystem::joined(applicationSupport, applicationIdentifier);
    }
};

/// Everything that the launcher is given of the machine it runs on. One is made at the start and
/// outlives all that refer to it; tests assemble one from fakes.
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
