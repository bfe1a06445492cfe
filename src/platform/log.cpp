#include "platform/log.h"

#include <QLoggingCategory>

namespace tessellar {

namespace {
Q_LOGGING_CATEGORY(category, "tessellar", QtWarningMsg)
}

void StandardErrorLog::info(const QString& text) { qCInfo(category).noquote() << text; }
void StandardErrorLog::warning(const QString& text) { qCWarning(category).noquote() << text; }

} // namespace tessellar
