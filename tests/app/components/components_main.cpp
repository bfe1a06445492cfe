#include "tests/support/thread_sanitizer.h"

#include <QGuiApplication>
#include <QQuickWindow>
#include <QtQml/qqmlextensionplugin.h>
#include <QtQuickTest/quicktest.h>

Q_IMPORT_QML_PLUGIN(TessellarPlugin)

/// Runs the tests that are written in QML beside it.
int main(int argc, char** argv) {
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    return quick_test_main(argc, argv, "components", TESSELLAR_TESTS);
}
