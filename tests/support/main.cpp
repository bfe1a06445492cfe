#include "tests/support/run_tests.h"

#include <QCoreApplication>

int main(int argc, char** argv) {
    const QCoreApplication application(argc, argv);
    return tessellar::test::runTests(argc, argv);
}
