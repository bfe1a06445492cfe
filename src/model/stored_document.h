#pragma once

#include "model/json.h"
#include "platform/background_file.h"
#include "platform/machine.h"
#include "platform/texts.h"

#include <algorithm>
#include <array>

namespace tessellar {

/// A non-essential document in a file in the application's folder. If it is damaged, too large or of
/// another version, it is set aside ("NAME.damaged-STAMP-TAG.json"). While it is unreadable, the file
/// is left alone and changes stay in memory only, until the next load discards them.
///
/// Main thread only. Written on a worker, before anything that is queued for saving later; the
/// destructor waits for that.
template <typename Document>
class StoredDocument {
public:
    StoredDocument(const Machine& machine, QString path, std::uint64_t maximumBytes)
        : _machine(machine)
        , _file(machine.workers, StoredFile(machine.files, std::move(path), maximumBytes)) {}
    ~StoredDocument() {
        if (const auto written = _file.wait(); !written && _untold > 0)
            warn(written);
    }
    StoredDocument(const StoredDocument&) = delete;
    StoredDocument& operator=(const StoredDocument&) = delete;

    const Document& value() const { return _value; }

    void load() {
        _value = {};
        _isBlocked = false;
        const auto bytes = _file.read();
        if (!bytes) {
            leaveOut(message(bytes.error()));
            // A file that can never be read would block saving forever.
            using Code = FileError::Code;
            constexpr std::array never{Code::tooLarge, Code::isADirectory, Code::notARegularFile};
            if (std::ranges::find(never, bytes.error().code) != never.end())
                setAside();
            else
                _isBlocked = true;
            return;
        }
        if (!*bytes)
            return;
        auto document = json::decodeDocument<Document>(**bytes);
        if (document && document->version != Document::supportedVersion)
            document = json::fail(Texts::tr("version %1 is not supported").arg(document->version));
        if (document) {
            _value = *std::move(document);
        } else {
            leaveOut(json::message(document.error()));
            setAside();
        }
    }

    /// The file's contents are unknown; changes are not written to it.
    bool isBlocked() const { return _isBlocked; }

    void set(Document value) {
        if (value == _value && !_file.lastError())
            return;
        _value = std::move(value);
        write();
    }

    /// Calls `done` on the main thread once writing has finished or failed.
    void whenWritten(BackgroundFile::Done done) { _file.whenWritten(std::move(done)); }
    /// As BackgroundFile::written, after retrying a failed write. Succeeds at once if blocked.
    std::function<BackgroundFile::Result()> written() {
        if (_isBlocked)
            return [] { return BackgroundFile::Result(); };
        if (_file.lastError())
            write();
        return _file.written();
    }

private:
    void write() {
        _file.write([value = _value]() -> std::expected<QByteArray, FileError> {
            return json::write(json::encode(value));
        });
        ++_untold;
        _file.whenWritten([this](const BackgroundFile::Result& written) {
            --_untold;
            warn(written);
        });
    }
    void warn(const BackgroundFile::Result& written) {
        if (!written)
            _machine.log.warning(message(written.error()));
    }
    void setAside() { _isBlocked = !_file.setAside(_machine.clock, _machine.uuids.next()).has_value(); }
    void leaveOut(const QString& why) {
        _machine.log.warning(QStringLiteral("%1 is left out: %2").arg(_file.path(), why));
    }

    const Machine& _machine;
    BackgroundFile _file;
    Document _value;
    int _untold = 0; ///< writes whose result has not reached the main thread
    bool _isBlocked = true;
};

} // namespace tessellar
