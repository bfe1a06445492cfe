#pragma once

#include "platform/uuid_source.h"

namespace tessellar::test {

/// 00000001-0000-4000-8000-000000000000, 00000002-…, and so on.
class SequentialUuids final : public UuidSource {
public:
    QUuid next() override { return QUuid(++_last, 0, 0x4000, 0x80, 0, 0, 0, 0, 0, 0, 0); }

private:
    unsigned _last = 0;
};

} // namespace tessellar::test
