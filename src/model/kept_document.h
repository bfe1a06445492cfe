#pragma once

#include "model/json.h"
#include "platform/machine.h"

namespace tessellar {

/// A document of the launcher's own that one can do without, in a file in the application's folder.
/// What is damaged, or of another version, is set aside beside the file
/// ("NAME.damaged-STAMP-TAG.json"). What cannot be read now stays as it is: until the next load,
/// changes are kept in memory alone.
///
/// Main thread only; writes at once, and only what is others than before.
template <typename Document>
class KeptDocument {
public:
    KeptDocument(const Machine& machine, QString path, std::uint64_t maximumBytes)
        : _machine(machine), _path(std::move(path)), _maximumBytes(maximumBytes) {}

    const Document& value() const { return _value; }

    void load() {
        _value = {};
        _mayWrite = true;
        const auto bytes = _machine.files.read(_path, _maximumBytes);
        if (!bytes && bytes.error().code == FileError::Code::notFound)
            return;
        if (!bytes)
            return leaveOut(message(bytes.error()), false);
        auto document = json::decodeDocument<Document>(*bytes);
        if (!document)
            return leaveOut(json::message(document.error()), true);
        if (document->version != Document::supportedVersion)
            return leaveOut(QStringLiteral("version %1 is not supported").arg(document->version), true);
        _value = *std::move(document);
    }

    void set(Document value) {
        if (value == _value)
            return;
        _value = std::move(value);
        const QByteArray bytes = _mayWrite ? json::write(json::encode(_value)) : QByteArray();
        if (bytes.isEmpty() || static_cast<std::uint64_t>(bytes.size()) > _maximumBytes)
            return;
        auto written = _machine.files.createDirectories(FileSystem::parent(_path));
        if (written)
            written = _machine.files.writeAtomically(_path, bytes);
        if (!written)
            _machine.log.warning(message(written.error()));
    }

private:
    void leaveOut(const QString& why, bool setAside) {
        _machine.log.warning(QStringLiteral("%1 is left out: %2").arg(_path, why));
        const QString aside =
            QStringLiteral("%1.damaged-%2-%3.json")
                .arg(_path.chopped(5), _machine.clock.now().toIso8601().replace(u':', u'-'),
                     toText(_machine.uuids.next()).first(8));
        _mayWrite = setAside && _machine.files.move(_path, aside).has_value();
    }

    const Machine& _machine;
    QString _path;
    std::uint64_t _maximumBytes;
    Document _value;
    bool _mayWrite = true;
};

} // namespace tessellar
