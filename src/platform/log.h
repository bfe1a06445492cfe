#pragma once

#include <QString>

namespace tessellar {

/// Diagnostics for whoever investigates later; never shown to the user. One sentence a call. Any
/// thread.
class Log {
public:
    virtual ~Log() = default;
    virtual void info(const QString& text) = 0;
    virtual void warning(const QString& text) = 0;
};

/// To standard error through Qt's category "tessellar", whose rules (QT_LOGGING_RULES) apply;
/// `info` is silent until they ask for it.
class StandardErrorLog final : public Log {
public:
    void info(const QString& text) override;
    void warning(const QString& text) override;
};

} // namespace tessellar
