#pragma once

#include "platform/http.h"

#include <QStringList>

#include <list>

namespace tessellar::test {

/// Requests that wait until the test answers them, in any order.
class FakeHttp final : public HttpClient {
public:
    [[nodiscard]] HttpCall get(const HttpRequest& request, Done done) override {
        requests.append(request);
        auto entry = std::make_shared<Entry>(Entry{request.url.toString(), std::move(done)});
        _waiting->push_back(entry);
        return HttpCall(std::make_unique<Call>(_waiting, entry));
    }

    /// The addresses that wait for an answer, oldest first.
    QStringList waiting() const {
        QStringList urls;
        for (const auto& entry : *_waiting)
            urls.append(entry->url);
        return urls;
    }

    /// Answers the oldest request whose address contains `part`; false when none waits.
    bool answer(const QString& part, Answer answer) {
        for (auto it = _waiting->begin(); it != _waiting->end(); ++it) {
            if (!(*it)->url.contains(part))
                continue;
            const auto entry = *it;
            _waiting->erase(it);
            entry->done(std::move(answer));
            return true;
        }
        return false;
    }
    bool answer(const QString& part, const QByteArray& body) {
        return answer(part, HttpResponse{200, body});
    }

    QList<HttpRequest> requests;

private:
    struct Entry {
        QString url;
        Done done;
    };
    using Waiting = std::list<std::shared_ptr<Entry>>;

    class Call final : public HttpCall::Pending {
    public:
        Call(std::shared_ptr<Waiting> waiting, std::shared_ptr<Entry> entry)
            : _waiting(std::move(waiting)), _entry(std::move(entry)) {}
        ~Call() override { _waiting->remove(_entry); }

    private:
        std::shared_ptr<Waiting> _waiting;
        std::shared_ptr<Entry> _entry;
    };

    std::shared_ptr<Waiting> _waiting = std::make_shared<Waiting>();
};

} // namespace tessellar::test
