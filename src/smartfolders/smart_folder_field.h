#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace tessellar {

/// A field of a kind of rule: an index into the table `Kind::fields`. Written by name, looked up at
/// compile time: `SmartFolderTextField field = "developer"`. The tables are in smart_folder_fields.h,
/// which code that only stores or compares fields need not include.
template <typename Kind>
class SmartFolderField {
public:
    SmartFolderField() = default;
    consteval SmartFolderField(const char* rawValue) {
        while (std::string_view(Kind::fields.at(_index).rawValue) != rawValue)
            ++_index;
    }

    static std::optional<SmartFolderField> named(QStringView rawValue) {
        for (const SmartFolderField field : all())
            if (rawValue == QLatin1StringView(field.row().rawValue))
                return field;
        return std::nullopt;
    }
    static constexpr auto all() {
        std::array<SmartFolderField, Kind::fields.size()> result;
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i]._index = i;
        return result;
    }

    constexpr std::size_t index() const { return _index; }
    constexpr const auto& row() const { return Kind::fields[_index]; }
    QString rawValue() const { return QLatin1StringView(row().rawValue); }

    bool operator==(const SmartFolderField&) const = default;

private:
    std::size_t _index = 0;
};

} // namespace tessellar
