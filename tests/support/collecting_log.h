#pragma once

#include "platform/log.h"

#include <QStringList>

#include <mutex>

namespace tessellar::test {

/// Keeps what is logged, each text behind "info: " or "warning: ".
class CollectingLog final : public Log {
public:
    void info(const QString& text) override { add(QStringLiteral("info: ") + text); }
    void warning(const QString& text) override { add(QStringLiteral("warning: ") + text); }

    QStringList lines() const {
        const std::lock_guard lock(_mutex);
        return _lines;
    }

private:
    void add(const QString& line) {
        const std::lock_guard lock(_mutex);
        _lines.append(line);
    }

    mutable std::mutex _mutex;
    QStringList _lines;
};

} // namespace tessellar::test
