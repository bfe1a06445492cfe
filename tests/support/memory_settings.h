#pragma once

#include "platform/settings.h"

#include <mutex>

namespace tessellar::test {

/// Settings that live as long as the test. `failure`, once set, is what every further `set` gives.
class MemorySettings final : public Settings {
public:
    QMap<QString, QJsonValue> values() const override {
        const std::lock_guard lock(_mutex);
        return _values;
    }

    using Settings::set;
    std::expected<void, FileError> set(const QMap<QString, QJsonValue>& changes) override {
        const std::lock_guard lock(_mutex);
        if (failure)
            return std::unexpected(*failure);
        ++writes;
        for (auto it = changes.begin(); it != changes.end(); ++it) {
            if (it->isNull() || it->isUndefined())
                _values.remove(it.key());
            else
                _values.insert(it.key(), *it);
        }
        return {};
    }

    std::optional<FileError> failure;
    int writes = 0;

private:
    mutable std::mutex _mutex;
    QMap<QString, QJsonValue> _values;
};

} // namespace tessellar::test
