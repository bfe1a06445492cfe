#pragma once

#include <QString>

namespace tessellar {

/// Diagnostics for developers; never shown to the user. One sentence per call. Thread-safe.
class Log {
public:
    virtual ~Log() = default;
    virtual void info(const QString& text) = 0;
    virtual void warning(const QString& text) = 0;
};

/// Writes to standard error through Qt's logging category "tessellar" and its rules (QT_LOGGING_RULES),
/// which must enable `info`.
class StandardErrorLog final : public Log {
public:
    void info(const QString& text) override;
    void warning(const QString& text) override;
};

} // namespace tessellar
