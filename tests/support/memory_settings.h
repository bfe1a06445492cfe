#pragma once

#include "platform/settings.h"

namespace tessellar::test {

/// Settings that live as long as the test. `failure`, once set, is what every further `set` gives.
class MemorySettings final : public Settings {
public:
    QMap<QString, QJsonValue> values() const override { return _values; }

    std::expected<void, FileError> set(const QString& key, const QJsonValue& value) override {
        if (failure)
            return std::unexpected(*failure);
        if (value.isNull() || value.isUndefined())
            _values.remove(key);
        else
            _values.insert(key, value);
        return {};
    }

    std::optional<FileError> failure;

private:
    QMap<QString, QJsonValue> _values;
};

} // namespace tessellar::test
