#include "platform/property_list.h"

#include "platform/property_list_document.h"
#include "platform/texts.h"

#include <QtEndian>

#include <algorithm>
#include <utility>

namespace tessellar {

using Kind = PropertyListDocument::Kind;

QString PropertyListDocument::text(const Node& node) const {
    const std::string_view slice = view(node);
    const auto length = static_cast<qsizetype>(slice.size());
    if (node.kind == Kind::text)
        return QString::fromUtf8(slice.data(), length);
    QString result(length / 2, Qt::Uninitialized);
    qFromBigEndian<char16_t>(slice.data(), result.size(), result.data());
    for (qsizetype i = 0; i < result.size(); ++i) {
        if (!result.at(i).isSurrogate())
            continue;
        if (result.at(i).isHighSurrogate() && i + 1 < result.size() &&
            result.at(i + 1).isLowSurrogate())
            ++i;
        else
            result[i] = QChar::ReplacementCharacter;
    }
    return result;
}

PropertyValue::PropertyValue(bool value) : _value(value) {}
PropertyValue::PropertyValue(qint64 value) : _value(value) {}
PropertyValue::PropertyValue(double value) : _value(value) {}
PropertyValue::PropertyValue(QString value) : _value(std::move(value)) {}
PropertyValue::PropertyValue(QByteArray value) : _value(std::move(value)) {}
PropertyValue::PropertyValue(Instant value) : _value(value) {}
PropertyValue::PropertyValue(Array value) : _value(std::move(value)) {}
PropertyValue::PropertyValue(Dictionary value) : _value(std::move(value)) {}

PropertyValue::PropertyValue(const std::shared_ptr<const PropertyListDocument>& document,
                             quint32 index) {
    const PropertyListDocument::Node& node = document->nodes[index];
    switch (node.kind) {
    case Kind::absent:
        break;
    case Kind::falseValue:
    case Kind::trueValue:
        _value = node.kind == Kind::trueValue;
        break;
    case Kind::integer:
        _value = node.integer;
        break;
    case Kind::real:
        _value = node.real;
        break;
    case Kind::date:
        _value = Instant{node.real};
        break;
    case Kind::text:
    case Kind::wideText:
    case Kind::data:
    case Kind::base64:
    case Kind::array:
    case Kind::dictionary:
        _value.emplace<Node>(document, index);
    }
}

/// The node at the index if it is of one of the kinds, otherwise null.
static const PropertyListDocument::Node* nodeOf(const PropertyListDocument& document, quint32 index,
                                                std::initializer_list<Kind> kinds) {
    const PropertyListDocument::Node& node = document.nodes[index];
    return std::ranges::find(kinds, node.kind) != kinds.end() ? &node : nullptr;
}

template <typename T, typename Variant>
static std::optional<T> held(const Variant& value) {
    const T* found = std::get_if<T>(&value);
    return found ? std::optional<T>(*found) : std::nullopt;
}

bool PropertyValue::isAbsent() const { return std::holds_alternative<std::monostate>(_value); }
std::optional<bool> PropertyValue::boolean() const { return held<bool>(_value); }
std::optional<qint64> PropertyValue::integer() const { return held<qint64>(_value); }
std::optional<Instant> PropertyValue::date() const { return held<Instant>(_value); }

std::optional<double> PropertyValue::number() const {
    if (const auto whole = integer())
        return static_cast<double>(*whole);
    return held<double>(_value);
}

std::optional<QString> PropertyValue::text() const {
    if (const Node* in = std::get_if<Node>(&_value)) {
        const auto* node = nodeOf(*in->document, in->index, {Kind::text, Kind::wideText});
        return node ? std::optional(in->document->text(*node)) : std::nullopt;
    }
    return held<QString>(_value);
}

std::optional<QByteArray> PropertyValue::data() const {
    if (const Node* in = std::get_if<Node>(&_value)) {
        const auto* node = nodeOf(*in->document, in->index, {Kind::data, Kind::base64});
        if (!node)
            return std::nullopt;
        const std::string_view slice = in->document->view(*node);
        const QByteArray bytes(slice.data(), static_cast<qsizetype>(slice.size()));
        return node->kind == Kind::data ? bytes : QByteArray::fromBase64(bytes);
    }
    return held<QByteArray>(_value);
}

std::optional<QStringList> PropertyValue::texts() const {
    if (!isArray())
        return std::nullopt;
    QStringList result;
    const Array elements = array();
    result.reserve(elements.size());
    for (const PropertyValue& element : elements) {
        auto text = element.text();
        if (!text)
            return std::nullopt;
        result.append(*std::move(text));
    }
    return result;
}

bool PropertyValue::isTruthy() const {
    if (const auto flag = boolean())
        return *flag;
    if (const auto value = number())
        return *value != 0;
    const auto word = text();
    return word && (*word == u"1" || word->compare(u"true", Qt::CaseInsensitive) == 0 ||
                    word->compare(u"yes", Qt::CaseInsensitive) == 0);
}

bool PropertyValue::isArray() const {
    const Node* in = std::get_if<Node>(&_value);
    return in ? nodeOf(*in->document, in->index, {Kind::array}) != nullptr
              : std::holds_alternative<Array>(_value);
}

bool PropertyValue::isDictionary() const {
    const Node* in = std::get_if<Node>(&_value);
    return in ? nodeOf(*in->document, in->index, {Kind::dictionary}) != nullptr
              : std::holds_alternative<Dictionary>(_value);
}

PropertyValue::Array PropertyValue::array() const {
    const Node* in = std::get_if<Node>(&_value);
    if (!in || !isArray())
        return held<Array>(_value).value_or(Array());
    const auto& nodes = in->document->nodes;
    Array result;
    for (quint32 i = in->index + 1; i < nodes[in->index].end; i = nodes[i].end)
        result.emplaceBack(in->document, i);
    return result;
}

PropertyValue::Dictionary PropertyValue::dictionary() const {
    const Node* in = std::get_if<Node>(&_value);
    if (!in || !isDictionary())
        return held<Dictionary>(_value).value_or(Dictionary());
    const auto& nodes = in->document->nodes;
    Dictionary result;
    for (quint32 key = in->index + 1; key < nodes[in->index].end; key = nodes[key + 1].end)
        result.insert(in->document->text(nodes[key]), PropertyValue(in->document, key + 1));
    return result;
}

PropertyValue PropertyValue::operator[](const QString& key) const {
    const Node* in = std::get_if<Node>(&_value);
    if (!in) {
        const Dictionary* entries = std::get_if<Dictionary>(&_value);
        return entries ? entries->value(key) : PropertyValue();
    }
    if (!isDictionary())
        return {};
    const PropertyListDocument& document = *in->document;
    const auto& nodes = document.nodes;
    const QByteArray utf8 = key.toUtf8();
    const std::string_view wanted(utf8.constData(), static_cast<std::size_t>(utf8.size()));
    quint32 found = 0;
    for (quint32 i = in->index + 1; i < nodes[in->index].end; i = nodes[i + 1].end) {
        if (nodes[i].kind == Kind::text ? document.view(nodes[i]) == wanted
                                        : document.text(nodes[i]) == key)
            found = i + 1;
    }
    return found ? PropertyValue(in->document, found) : PropertyValue();
}

/// A copy that does not refer to the document, one level deep.
PropertyValue PropertyValue::materialized() const {
    const Node* in = std::get_if<Node>(&_value);
    if (!in)
        return *this;
    switch (in->document->nodes[in->index].kind) {
    case Kind::text:
    case Kind::wideText:
        return PropertyValue(*text());
    case Kind::array:
        return PropertyValue(array());
    case Kind::dictionary:
        return PropertyValue(dictionary());
    default:
        return PropertyValue(*data());
    }
}

bool PropertyValue::operator==(const PropertyValue& other) const {
    if (_value == other._value)
        return true;
    const bool read =
        std::holds_alternative<Node>(_value) || std::holds_alternative<Node>(other._value);
    return read && materialized()._value == other.materialized()._value;
}

QString message(PropertyListError error) {
    switch (error) {
    case PropertyListError::notAPropertyList:
        return Texts::tr("The file is not a property list.");
    case PropertyListError::damaged:
        return Texts::tr("The property list is damaged.");
    case PropertyListError::tooLarge:
        return Texts::tr("The property list is too large.");
    case PropertyListError::tooDeep:
        return Texts::tr("The property list is nested too deeply.");
    case PropertyListError::tooManyNodes:
        return Texts::tr("The property list holds too many values.");
    }
    return {};
}

std::expected<PropertyValue, PropertyListError> parsePropertyList(const QByteArray& bytes,
                                                                  const PropertyListLimits& limits) {
    constexpr std::uint64_t most = 1u << 30; // offsets and indexes are 32 bits wide
    const PropertyListLimits bounded{.bytes = std::min(limits.bytes, most),
                                     .depth = std::min(limits.depth, 512),
                                     .nodes = std::min(limits.nodes, most)};
    if (static_cast<std::uint64_t>(bytes.size()) > bounded.bytes)
        return std::unexpected(PropertyListError::tooLarge);
    auto document = bytes.startsWith("bplist") ? readBinaryPropertyList(bytes, bounded)
                                               : readXmlPropertyList(bytes, bounded);
    if (!document)
        return std::unexpected(document.error());
    return PropertyValue(std::make_shared<const PropertyListDocument>(*std::move(document)), 0);
}

} // namespace tessellar
