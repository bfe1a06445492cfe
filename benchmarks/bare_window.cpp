// The least that a window of Qt Quick costs: one rectangle, drawn once. The floor of the launcher's
// start.

#include <QGuiApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QQuickWindow>

int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    QGuiApplication application(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(&engine);
    component.setData("import QtQuick; Window { width: 1440; height: 900; visible: true; color: 'navy';"
                      "Text { text: 'A'; color: 'white' } }",
                      {});
    const std::unique_ptr<QObject> root(component.create());
    auto* window = qobject_cast<QQuickWindow*>(root.get());
    if (!window)
        return 1;
    QObject::connect(window, &QQuickWindow::frameSwapped, &application, &QGuiApplication::quit);
    return application.exec();
}
