#include "sample/alias_writer.h"
#include "sample/plist.h"
#include "tests/support/binary_list_builder.h"

#include <QDir>
#include <QFile>

#include <cstdio>

using namespace Qt::Literals::StringLiterals;
using namespace tessellar;

namespace {

bool write(const QString& folder, const QMap<QString, QByteArray>& seeds) {
    bool written = QDir().mkpath(folder);
    for (auto seed = seeds.begin(); seed != seeds.end(); ++seed) {
        QFile file(folder + u'/' + seed.key());
        written = written && file.open(QIODevice::WriteOnly) &&
                  file.write(seed.value()) == seed.value().size();
    }
    return written;
}

} // namespace

/// Writes seeds for each fuzz target into a folder of its own below the one given.
int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: make_seeds FOLDER\n", stderr);
        return 2;
    }
    const sample::Plist list = sample::Plist::Dictionary{
        {u"CFBundleName"_s, u"Farn é"_s},
        {u"LSUIElement"_s, true},
        {u"Numbers"_s,
         sample::Plist::Array{1, -70'000, 2.5, QByteArray("data"), QDateTime::fromSecsSinceEpoch(0)}}};
    const QMap<QString, QString> names{{u"CFBundleName"_s, u"Fern \"é\"\n"_s}, {u"b"_s, u"c"_s}};
    test::BinaryListBuilder shared;
    shared.dictionary({1, 2}, {3, 4});
    shared.text("a");
    shared.add(std::string("\x62\0\xE9\0a", 5));
    shared.array({1, 1});
    shared.add("\x80\x07");

    const QByteArray xml = sample::plistBytes(list, sample::PlistForm::xml);
    const QByteArray binary = sample::plistBytes(list, sample::PlistForm::binary);
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const bool written =
        write(folder + u"/property_list"_s,
              {{u"xml"_s, xml}, {u"binary"_s, binary}, {u"shared"_s, shared.bytes()}}) &&
        write(folder + u"/strings_file"_s,
              {{u"utf8"_s, sample::stringsFileBytes(names, false)},
               {u"utf16"_s, sample::stringsFileBytes(names, true)},
               {u"comments"_s, "/* a */ a = b; // c\n'd' = \"\\U00e9\\101\";"},
               {u"binary"_s, binary}}) &&
        write(folder + u"/alias_file"_s,
              {{u"alias"_s, sample::aliasFileBytes(u"/Applications/Foo Bar.app"_s)}});
    if (!written)
        std::perror("make_seeds");
    return written ? 0 : 1;
}
