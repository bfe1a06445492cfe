#pragma once

#include "platform/uuid_source.h"

#include <atomic>

namespace tessellar::test {

/// 00000001-0000-4000-8000-000000000000, 00000002-…, and so on.
class SequentialUuids final : public UuidSource {
public:
    QUuid next() override { return QUuid(++_last, 0, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0); }
    void restart() { _last = 0; }

private:
    std::atomic<unsigned> _last = 0; ///< workers take some, too
};

} // namespace tessellar::test
