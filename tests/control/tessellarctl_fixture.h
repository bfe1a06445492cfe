#pragma once

#include "model/json.h"
#include "sample/mac_builder.h"
#include "support/printers.h"

#include <QCoreApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace tessellar {

/// The program itself, on a small Mac.
class TessellarctlTest : public testing::Test {
protected:
    struct Result {
        int status = -1;
        QByteArray out;
        QByteArray error;

        QJsonObject json() const { return json::parse(out).value_or(QJsonValue()).toObject(); }
        QString code() const { return json().value(u"error").toObject().value(u"code").toString(); }
    };

    QTemporaryDir root;
    sample::MacBuilder builder{root.path()};

    TessellarctlTest() {
        builder.addStandardFolders();
        for (const QString& name : {u"Ash"_qs, u"Beech"_qs})
            builder.addApplication(
                {.name = name, .identifier = QStringLiteral("org.example.") + name.toLower()});
    }

    Result run(QStringList words, const QByteArray& input = {}, bool json = true) {
        QProcess process;
        words = QStringList{u"--root"_qs, root.path()} +
                (json ? QStringList{u"--json"_qs} : QStringList()) + words;
        process.start(QStringLiteral(TESSELLARCTL), words);
        process.write(input);
        process.closeWriteChannel();
        // A launcher in this process may have to answer it.
        while (process.state() != QProcess::NotRunning)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        return {process.exitCode(), process.readAllStandardOutput(), process.readAllStandardError()};
    }
};

} // namespace tessellar
