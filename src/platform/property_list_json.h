#pragma once

#include "platform/property_list.h"

#include <QJsonValue>

namespace tessellar {

/// A property list's value as JSON. What JSON cannot hold (dates, data, numbers that are none) is
/// undefined, and left out of lists and dictionaries.
QJsonValue toJson(const PropertyValue& value);

/// A JSON value as an element of an XML property list, without a document around it. Nulls are left
/// out of lists and dictionaries; a null itself gives an empty text.
QByteArray toPropertyListElement(const QJsonValue& value);

} // namespace tessellar
