#pragma once

#include <QByteArray>
#include <QString>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <sys/stat.h>

namespace tessellar::test {

/// Everything of a folder by its path inside it: kind, permissions, date, and bytes or a link's target.
inline std::map<std::string, std::string> treeOf(const QString& folder) {
    namespace fs = std::filesystem;
    std::map<std::string, std::string> tree;
    const fs::path root(folder.toStdString());
    for (const fs::directory_entry& entry : fs::recursive_directory_iterator(root)) {
        struct stat status = {};
        ::lstat(entry.path().c_str(), &status);
        std::ostringstream text;
        text << std::oct << status.st_mode << ' ' << std::dec << status.st_mtime << ' ';
        if (entry.is_symlink())
            text << fs::read_symlink(entry.path()).string();
        else if (entry.is_regular_file())
            text << std::ifstream(entry.path(), std::ios::binary).rdbuf();
        tree[entry.path().lexically_relative(root).string()] = text.str();
    }
    return tree;
}

inline QByteArray bytesOf(const QString& hostPath) {
    std::ostringstream text;
    text << std::ifstream(hostPath.toStdString(), std::ios::binary).rdbuf();
    return QByteArray::fromStdString(text.str());
}

} // namespace tessellar::test
