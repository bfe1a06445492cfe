#include "launcher/language.h"

#include <QCoreApplication>
#include <QFile>
#include <QLibraryInfo>
#include <QLocale>

#include <utility>

namespace tessellar {

static const QString sourceLanguage = QStringLiteral("en");

static QString fileOf(const QString& code) {
    return QStringLiteral(":/languages/tessellar_%1.qm").arg(code);
}

static QString languageOf(const QString& tag) {
    return tag.section(u'-', 0, 0).section(u'_', 0, 0).toLower();
}

bool Language::follow(const std::optional<QString>& setting, const Locale& locale) {
    const bool isSet = setting && !setting->isEmpty() && *setting != asSystem;
    const QStringList wanted = isSet ? QStringList(*setting) : locale.languages();
    QString code = sourceLanguage;
    for (const QString& tag : wanted) {
        const QString language = languageOf(tag);
        if (language != sourceLanguage && !QFile::exists(fileOf(language)))
            continue;
        code = language;
        break;
    }
    _direction = wanted.isEmpty() ? Qt::LeftToRight : QLocale(wanted.first()).textDirection();
    if (code == std::exchange(_code, code))
        return false;
    QCoreApplication::removeTranslator(&_texts);
    QCoreApplication::removeTranslator(&_ofQt);
    if (code == sourceLanguage)
        return true;
    if (_ofQt.load(QStringLiteral("qtbase_") + code,
                   QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&_ofQt);
    if (_texts.load(fileOf(code)))
        QCoreApplication::installTranslator(&_texts);
    return true;
}

} // namespace tessellar
