#pragma once

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace tessellar {

/// A field of a kind of rule: a row of the table `Kind::fields`. Written as its name, which is looked
/// up when compiling: `SmartFolderTextField field = "developer"`. The tables stand in
/// smart_folder_fields.h; who only keeps or compares fields needs none of them.
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
