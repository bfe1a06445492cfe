#include "sample/demonstration_mac.h"

#include <CLI/CLI.hpp>
#include <QDir>

#include <cstdio>

using namespace tessellar;

int main(int argc, char** argv) {
    CLI::App cli("Builds a Mac in a folder: applications of every kind, their leftovers, and stand-ins "
                 "for tools.");
    std::string directory;
    int applications = -1;
    cli.add_option("DIRECTORY", directory, "The folder; what an earlier run left there is replaced")
        ->required();
    cli.add_option("--applications", applications, "How many applications, apart from the odd ones")
        ->check(CLI::Range(0, 100'000));
    CLI11_PARSE(cli, argc, argv);

    QDir folder(QString::fromStdString(directory));
    // Only a folder that is empty or was built here before is touched.
    const bool ours = folder.exists(sample::MacBuilder::toolData().sliced(1));
    if (folder.exists() && !folder.isEmpty() && !ours) {
        std::fprintf(stderr, "“%s” holds something else; name another folder.\n", directory.c_str());
        return 1;
    }
    if (ours && !folder.removeRecursively()) {
        std::fprintf(stderr, "Could not clear “%s”.\n", directory.c_str());
        return 1;
    }
    sample::MacBuilder mac(folder.absolutePath());
    sample::buildDemonstrationMac(mac, applications < 0 ? std::nullopt : std::optional(applications));
    return mac.failure() ? 1 : 0;
}
