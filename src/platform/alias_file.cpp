#include "platform/alias_file.h"

#include "platform/descriptor.h"

#include <QtEndian>

#include <sys/stat.h>

#include <array>
#include <cstring>
#include <string_view>

namespace tessellar {
namespace {

constexpr std::string_view magic("book\0\0\0\0mark", 12);
constexpr std::uint64_t maximumBytes = 1u << 20;
constexpr int maximumTables = 64;
constexpr quint32 tableMark = 0xFFFFFFFE;
constexpr quint32 targetPath = 0x1004;
constexpr quint32 textType = 0x0101;
constexpr quint32 arrayType = 0x0601;

bool beginsAsAlias(std::string_view bytes) { return bytes.starts_with(magic); }

/// The body of an alias file. Numbers are little-endian; offsets are relative to its start.
class AliasReader {
public:
    explicit AliasReader(std::string_view bytes) : _bytes(bytes) {}

    std::optional<QString> target() const {
        auto table = number(0);
        for (int tables = 0; table && tables < maximumTables; ++tables) {
            const auto mark = number(*table + 4ull);
            const auto count = number(*table + 16ull);
            if (!mark || *mark != tableMark || !count)
                return std::nullopt;
            for (quint32 i = 0; i < *count; ++i) {
                const quint64 entry = *table + 20ull + i * 12ull;
                const auto key = number(entry);
                const auto offset = number(entry + 4);
                if (!key || !offset)
                    return std::nullopt;
                if (*key == targetPath)
                    return path(*offset);
            }
            table = number(*table + 12ull);
            if (table == 0u)
                return std::nullopt;
        }
        return std::nullopt;
    }

private:
    std::optional<quint32> number(quint64 offset) const {
        if (offset > _bytes.size() || _bytes.size() - offset < 4)
            return std::nullopt;
        return qFromLittleEndian<quint32>(_bytes.data() + offset);
    }

    std::optional<std::string_view> item(quint64 offset, quint32 type) const {
        const auto length = number(offset);
        if (!length || number(offset + 4) != type || _bytes.size() - (offset + 8) < *length)
            return std::nullopt;
        return _bytes.substr(offset + 8, *length);
    }

    std::optional<QString> path(quint32 offset) const {
        const auto components = item(offset, arrayType);
        if (!components || components->empty() || components->size() % 4 != 0)
            return std::nullopt;
        QString result;
        for (std::size_t at = 0; at < components->size(); at += 4) {
            const auto component = item(qFromLittleEndian<quint32>(components->data() + at), textType);
            if (!component || component->empty() || *component == "." || *component == ".." ||
                component->find('/') != component->npos || component->find('\0') != component->npos)
                return std::nullopt;
            // Components may share bytes, so the result is bounded: no real path is longer.
            if (result.size() + static_cast<qsizetype>(component->size()) > 8'192)
                return std::nullopt;
            result += u'/' + FileSystem::fromHostBytes(
                                 {component->data(), static_cast<qsizetype>(component->size())});
        }
        return result;
    }

    std::string_view _bytes;
};

} // namespace

std::expected<bool, FileError> isAliasFile(const FileSystem& files, const QString& path) {
    const auto file = files.open(path);
    if (!file && file.error().code == FileError::Code::notARegularFile)
        return false;
    if (!file)
        return std::unexpected(file.error());
    std::array<char, magic.size()> start{};
    const ssize_t size = retrying([&] { return ::pread(file->get(), start.data(), start.size(), 0); });
    if (size < 0)
        return std::unexpected(fileError(errno, path));
    return size == static_cast<ssize_t>(start.size()) && beginsAsAlias({start.data(), start.size()});
}

std::optional<QString> aliasTarget(const FileSystem& files, const QString& path) {
    const auto bytes = files.read(path, maximumBytes);
    return bytes ? aliasTarget(*bytes) : std::nullopt;
}

std::optional<QString> aliasTarget(const QByteArray& bytes) {
    const std::string_view all(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    if (all.size() > maximumBytes || all.size() < 20 || !beginsAsAlias(all))
        return std::nullopt;
    const auto header = qFromLittleEndian<quint32>(all.data() + 16);
    if (header < 20 || header > all.size())
        return std::nullopt;
    return AliasReader(all.substr(header)).target();
}

} // namespace tessellar
