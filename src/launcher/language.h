#pragma once

#include "platform/settings.h"
#include "platform/text.h"

#include <QTranslator>

namespace tessellar {

/// The language of the texts: English, as in the sources, or a translation. One per program; must not
/// outlive its QCoreApplication.
class Language {
public:
    static inline const QString settingKey = QStringLiteral("language");
    /// The setting's value for the system's language.
    static inline const QString asSystem = QStringLiteral("system");

    Language() = default;
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

    /// Selects the language in the setting, or else the first available one of the user's; English if
    /// there is none. True if it changed.
    bool follow(const std::optional<QString>& setting, const Locale& locale);
    bool follow(const Settings& settings, const Locale& locale) {
        return follow(settings.text(settingKey), locale);
    }

    const QString& code() const { return _code; }
    /// The layout direction; without a translation, that of the user's language.
    Qt::LayoutDirection direction() const { return _direction; }

private:
    QTranslator _texts;
    QTranslator _ofQt; ///< Qt's own texts, if translations are installed
    QString _code = QStringLiteral("en");
    Qt::LayoutDirection _direction = Qt::LeftToRight;
};

} // namespace tessellar
