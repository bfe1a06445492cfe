#include "launcher_fixture.h"
#include "tests/support/run_tests.h"

#include <QGuiApplication>
#include <QQuickWindow>

namespace {

QtMessageHandler previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    // What QML says of itself comes as warnings, with the file in the text.
    if (message.contains(QLatin1StringView("qrc:")) || message.contains(QLatin1StringView(".qml")))
        tessellar::test::qmlWarnings().append(message);
    previous(type, context, message);
}

} // namespace

QStringList& tessellar::test::qmlWarnings() {
    static QStringList warnings;
    return warnings;
}

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QGuiApplication application(argc, argv);
    previous = qInstallMessageHandler(collect);
    return tessellar::test::runTests(argc, argv);
}
