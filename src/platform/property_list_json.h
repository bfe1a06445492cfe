#pragma once

#include "platform/property_list.h"

#include <QJsonValue>

namespace tessellar {

/// Converts to JSON. Values without a JSON form (dates, data, NaN and infinities) become undefined and
/// are left out of containers.
QJsonValue toJson(const PropertyValue& value);

/// Converts to an element of an XML property list, without the surrounding document. Nulls are left out
/// of containers; a top-level null gives an empty string.
QByteArray toPropertyListElement(const QJsonValue& value);

} // namespace tessellar
