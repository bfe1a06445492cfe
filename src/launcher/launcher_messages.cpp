#include "launcher/launcher_messages.h"

namespace tessellar {

void LauncherMessages::showNotice(const QString& text, const QString& symbolName,
                                  std::chrono::milliseconds duration) {
    _notice = LauncherNotice{text, symbolName, ++_noticeRevision};
    _noticeTimer = _scheduler.after(duration, [this] {
        _notice.reset();
        noticeChanged.notify();
    });
    noticeChanged.notify();
}

void LauncherMessages::alert(LauncherError error) {
    _alerts.append(std::move(error));
    alerted.notify();
}

void LauncherMessages::report(const LauncherError& error) {
    if (error.title.isEmpty())
        showNotice(error.message);
    else
        alert(error);
}

void LauncherMessages::report(const std::expected<void, LauncherError>& outcome) {
    if (!outcome)
        report(outcome.error());
}

void LauncherMessages::ask(const LauncherQuestion& question, std::function<void(bool)> answer) {
    _questions.push_back({question, std::move(answer)});
    if (_questions.size() == 1)
        questionChanged.notify();
}

LauncherAsker LauncherMessages::asker() {
    return [this](const LauncherQuestion& question, std::function<void(bool)> answer) {
        ask(question, std::move(answer));
    };
}

const LauncherQuestion* LauncherMessages::question() const {
    return _questions.empty() ? nullptr : &_questions.front().question;
}

void LauncherMessages::answer(bool accepted) {
    if (_questions.empty())
        return;
    const auto answer = std::move(_questions.front().answer);
    _questions.pop_front();
    questionChanged.notify();
    answer(accepted);
}

} // namespace tessellar
