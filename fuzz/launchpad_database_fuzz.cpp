// The old Launchpad's database, and the tree that its rows say.

#include "discovery/launchpad_reader.h"
#include "discovery/launchpad_tree.h"
#include "fuzz/memory_folder.h"
#include "fuzz/touch_all.h"

using namespace tessellar;

static qsizetype nodes(const QList<ImportedNode>& tree) {
    qsizetype count = tree.size();
    for (const ImportedNode& node : tree)
        count += nodes(node.children);
    return count;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFolder folder;
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    folder.clear();
    folder.write(QStringLiteral("db"), bytes);
    const LaunchpadReadLimits limits{
        .rows = 2'000, .textBytes = 200, .time = std::chrono::milliseconds(2'000)};
    const auto rows = readLaunchpadRows(folder.hostPath(QStringLiteral("db")), {}, limits);
    if (!rows)
        return 0;
    fuzz::require(rows->items.size() <= limits.rows && rows->apps.size() <= limits.rows);
    // Each item is in the tree once at most; what stands outside a page gets one of its own.
    fuzz::require(nodes(launchpadTree(*rows)) <= 2 * rows->items.size());
    return 0;
}
