#include "platform/bundle.h"
#include "sample/mac_builder.h"

#include <QTemporaryDir>

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <pugixml.hpp>
#include <sys/stat.h>
#include <unistd.h>

#include <vector>

using namespace Qt::Literals::StringLiterals;
using namespace tessellar;

namespace {

constexpr int bundles = 1'000;

/// An Info.plist of about 7 kB, a hundred keys, as large applications have it.
sample::Plist::Dictionary largeInfo(int number) {
    sample::Plist::Dictionary info{
        {u"CFBundleIdentifier"_s, u"com.example.app%1"_s.arg(number)},
        {u"LSApplicationCategoryType"_s, u"public.app-category.utilities"_s}};
    sample::Plist::Array types;
    for (int i = 0; i < 20; ++i)
        types.append(sample::Plist::Dictionary{
            {u"CFBundleTypeName"_s, u"Document of kind %1"_s.arg(i)},
            {u"CFBundleTypeRole"_s, u"Viewer"_s},
            {u"LSItemContentTypes"_s, sample::texts({u"public.example.content-%1"_s.arg(i)})}});
    info[u"CFBundleDocumentTypes"_s] = types;
    for (int i = 0; i < 30; ++i)
        info[u"NSExample%1UsageDescription"_s.arg(i)] = u"This lets you do something & more."_s;
    return info;
}

/// A thousand bundles in a folder, and the bytes of the first one's Info.plist.
class Fixture {
public:
    explicit Fixture(sample::PlistForm form) {
        sample::MacBuilder mac(folder.path());
        for (int i = 0; i < bundles; ++i)
            paths.append(mac.addApplication(
                {.name = u"App %1"_s.arg(i), .plistForm = form, .info = largeInfo(i)}));
        info = files.read(paths.first() + u"/Contents/Info.plist"_s, 1 << 20).value();
        for (const QString& path : paths)
            hostInfoPaths.push_back(files.hostPath(path + u"/Contents/Info.plist"_s));
    }
    static const Fixture& of(sample::PlistForm form) {
        static const Fixture xml(sample::PlistForm::xml);
        static const Fixture binary(sample::PlistForm::binary);
        return form == sample::PlistForm::xml ? xml : binary;
    }

    QTemporaryDir folder;
    FileSystem files{folder.path()};
    QStringList paths;
    std::vector<QByteArray> hostInfoPaths;
    QByteArray info;
};

void parsePlainXml(benchmark::State& state) {
    const QByteArray& info = Fixture::of(sample::PlistForm::xml).info;
    for (auto _ : state) {
        pugi::xml_document xml;
        benchmark::DoNotOptimize(
            xml.load_buffer(info.constData(), static_cast<std::size_t>(info.size())));
    }
    state.SetBytesProcessed(state.iterations() * info.size());
}
BENCHMARK(parsePlainXml);

void parseList(benchmark::State& state, sample::PlistForm form) {
    const QByteArray& info = Fixture::of(form).info;
    for (auto _ : state)
        benchmark::DoNotOptimize(parsePropertyList(info));
    state.SetBytesProcessed(state.iterations() * info.size());
}
BENCHMARK_CAPTURE(parseList, xml, sample::PlistForm::xml);
BENCHMARK_CAPTURE(parseList, binary, sample::PlistForm::binary);

/// What making strings and maps of everything would cost on top.
void parseAndExpandXml(benchmark::State& state) {
    const auto expand = [](const auto& self, const PropertyValue& value) -> void {
        benchmark::DoNotOptimize(value.text());
        for (const PropertyValue& child : value.array())
            self(self, child);
        const PropertyValue::Dictionary entries = value.dictionary();
        for (const PropertyValue& child : entries)
            self(self, child);
    };
    for (auto _ : state)
        expand(expand, *parsePropertyList(Fixture::of(sample::PlistForm::xml).info));
}
BENCHMARK(parseAndExpandXml);

void readThousandListsInC(benchmark::State& state, sample::PlistForm form) {
    const Fixture& fixture = Fixture::of(form);
    std::vector<char> buffer(1 << 16);
    for (auto _ : state) {
        for (const QByteArray& path : fixture.hostInfoPaths) {
            const int file = ::open(path.constData(), O_RDONLY | O_CLOEXEC);
            struct stat status {};
            benchmark::DoNotOptimize(::fstat(file, &status));
            benchmark::DoNotOptimize(::read(file, buffer.data(), buffer.size()));
            ::close(file);
        }
    }
}
BENCHMARK_CAPTURE(readThousandListsInC, xml, sample::PlistForm::xml)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readThousandListsInC, binary, sample::PlistForm::binary)
    ->Unit(benchmark::kMillisecond);

void readThousandBundles(benchmark::State& state, sample::PlistForm form) {
    const Fixture& fixture = Fixture::of(form);
    for (auto _ : state) {
        for (const QString& path : fixture.paths) {
            const Bundle bundle = readBundle(fixture.files, path);
            benchmark::DoNotOptimize(bundle.identifier());
            benchmark::DoNotOptimize(bundle.category());
            benchmark::DoNotOptimize(bundle.executablePath());
        }
    }
}
BENCHMARK_CAPTURE(readThousandBundles, xml, sample::PlistForm::xml)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(readThousandBundles, binary, sample::PlistForm::binary)
    ->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
