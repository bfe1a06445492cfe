#include "smartfolders/smart_folder_fields.h"

#include "model/app_state.h"

namespace tessellar {

bool isProtected(const AppEntry& entry) {
    return entry.path.startsWith(u"/System/") || entry.path.startsWith(u"/Library/Apple/");
}

bool isRemovable(const AppEntry& entry, const FileSystem& files) {
    return !isProtected(entry) && !isNestedInAnotherApplication(entry.path) &&
           isAvailable(files, entry);
}

} // namespace tessellar
