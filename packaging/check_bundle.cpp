// Reads the property lists and the icon of a bundle with the readers that other applications are read
// with:
//     check-bundle BUNDLE PLIST...
// Says what is wrong and ends with 1.

#include "icons/icns_file.h"
#include "platform/bundle.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace tessellar;

namespace {

int failures = 0;

void require(bool holds, const QString& what) {
    if (holds)
        return;
    std::fprintf(stderr, "check-bundle: %s\n", qUtf8Printable(what));
    ++failures;
}

QByteArray bytesOf(const QString& path) {
    QFile file(path);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fputs("check-bundle BUNDLE PLIST...\n", stderr);
        return 2;
    }
    for (int i = 2; i < argc; ++i) {
        const auto list = parsePropertyList(bytesOf(QString::fromLocal8Bit(argv[i])));
        require(list && list->isDictionary(),
                QString::fromLocal8Bit(argv[i]) + QStringLiteral(" is unreadable"));
    }
    const FileSystem files;
    const Bundle bundle = readBundle(files, QDir(QString::fromLocal8Bit(argv[1])).absolutePath());
    require(bundle.identifier() == QStringLiteral("com.tessellar.app"),
            QStringLiteral("wrong identifier"));
    require(bundle.version().has_value(), QStringLiteral("no version"));
    const auto executable = bundle.executablePath();
    require(executable && files.isExecutableFile(*executable), QStringLiteral("no executable"));
    const auto icon = IcnsFile::parse(bytesOf(bundle.iconPath().value_or(QString())));
    require(icon && icon->entries().size() == 8, QStringLiteral("the icon is incomplete"));
    return failures == 0 ? 0 : 1;
}
