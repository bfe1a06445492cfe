// The registry of smart folders as the store reads it: read, or moved aside byte for byte.

#include "fuzz/memory_folder.h"
#include "fuzz/touch_all.h"
#include "smartfolders/smart_folder_store.h"

using namespace tessellar;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const fuzz::MemoryFolder folder;
    static const FileSystem files(folder.hostPath());
    static const SystemClock clock;
    static RandomUuidSource uuids;
    const QString path = QStringLiteral("/computed-folders.json");
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    folder.clear();
    fuzz::require(files.writeAtomically(path, bytes).has_value());

    SmartFolderStore store(files, QStringLiteral("/"), clock, uuids);
    const auto result = store.load();
    if (const auto* loaded = std::get_if<SmartFolderStore::Loaded>(&result)) {
        // What was read can be saved and is read as the same.
        fuzz::require(store.save(loaded->definitions).has_value());
        SmartFolderStore other(files, QStringLiteral("/"), clock, uuids);
        const auto again = other.load();
        const auto* same = std::get_if<SmartFolderStore::Loaded>(&again);
        fuzz::require(same && json::encode(same->definitions) == json::encode(loaded->definitions));
    } else {
        // It lies aside as it was, and is put back as it was.
        fuzz::require(!files.exists(path) && !store.save({}).has_value());
        const auto aside = store.lastQuarantinedPath();
        fuzz::require(aside && files.read(*aside, SmartFolderStore::maximumBytes) == bytes);
    }
    return 0;
}
