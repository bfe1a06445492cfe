#include "platform/property_list_json.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QLocale>

#include <cmath>

namespace tessellar {

namespace {

QByteArray element(const char* name, const QByteArray& content) {
    return QByteArray("<") + name + '>' + content + "</" + name + '>';
}

bool isInteger(const QJsonValue& number) { return number.toInteger(0) == number.toInteger(1); }

} // namespace

QJsonValue toJson(const PropertyValue& value) {
    if (const auto boolean = value.boolean())
        return *boolean;
    if (const auto integer = value.integer())
        return *integer;
    if (const auto number = value.number())
        return std::isfinite(*number) ? QJsonValue(*number) : QJsonValue(QJsonValue::Undefined);
    if (const auto text = value.text())
        return *text;
    if (value.isArray()) {
        QJsonArray array;
        for (const PropertyValue::Array elements = value.array(); const PropertyValue& each : elements)
            if (const QJsonValue json = toJson(each); !json.isUndefined())
                array.append(json);
        return array;
    }
    if (value.isDictionary()) {
        QJsonObject object;
        const PropertyValue::Dictionary entries = value.dictionary();
        for (auto entry = entries.begin(); entry != entries.end(); ++entry)
            if (const QJsonValue json = toJson(*entry); !json.isUndefined())
                object.insert(entry.key(), json);
        return object;
    }
    return QJsonValue::Undefined;
}

QByteArray toPropertyListElement(const QJsonValue& value) {
    switch (value.type()) {
    case QJsonValue::Bool:
        return value.toBool() ? "<true/>" : "<false/>";
    case QJsonValue::Double:
        return isInteger(value) ? element("integer", QByteArray::number(value.toInteger()))
                                : element("real", QByteArray::number(value.toDouble(), 'g',
                                                                     QLocale::FloatingPointShortest));
    case QJsonValue::String:
        return element("string", value.toString().toHtmlEscaped().toUtf8());
    case QJsonValue::Array: {
        QByteArray content;
        for (const QJsonArray array = value.toArray(); const QJsonValue each : array)
            content += toPropertyListElement(each);
        return element("array", content);
    }
    case QJsonValue::Object: {
        QByteArray content;
        const QJsonObject object = value.toObject();
        for (auto entry = object.begin(); entry != object.end(); ++entry)
            if (const QByteArray each = toPropertyListElement(*entry); !each.isEmpty())
                content += element("key", entry.key().toHtmlEscaped().toUtf8()) + each;
        return element("dict", content);
    }
    case QJsonValue::Null:
    case QJsonValue::Undefined:
        break;
    }
    return {};
}

} // namespace tessellar
