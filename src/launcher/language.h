#pragma once

#include "platform/settings.h"
#include "platform/text.h"

#include <QTranslator>

namespace tessellar {

/// The language that texts are given in: that of the sources, English, or one that they are translated
/// to. A program has one, which does not outlive its QCoreApplication.
class Language {
public:
    static inline const QString settingKey = QStringLiteral("language");
    /// What the setting says for the user's own.
    static inline const QString asSystem = QStringLiteral("system");

    Language() = default;
    Language(const Language&) = delete;
    Language& operator=(const Language&) = delete;

    /// Takes the one that is set, or the first of those that the user reads; English where there is
    /// none of them. True when it is another than before.
    bool follow(const std::optional<QString>& setting, const Locale& locale);
    bool follow(const Settings& settings, const Locale& locale) {
        return follow(settings.text(settingKey), locale);
    }

    const QString& code() const { return _code; }
    /// Which way it is read; without a translation, the way of the user's own language.
    Qt::LayoutDirection direction() const { return _direction; }

private:
    QTranslator _texts;
    QTranslator _ofQt; ///< of its own texts, where the system has them
    QString _code = QStringLiteral("en");
    Qt::LayoutDirection _direction = Qt::LeftToRight;
};

} // namespace tessellar
