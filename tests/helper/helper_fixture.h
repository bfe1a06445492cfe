#pragma once

#include "helper/file_operations.h"
#include "tests/support/printers.h"
#include "tests/support/test_machine.h"

#include <gmock/gmock.h>

#include <unistd.h>

namespace tessellar::test {

/// A Mac with a Trash, and the helper's operations on it.
struct HelperMac {
    TestMachine mac;
    QTemporaryDir state;
    const QString trash = QStringLiteral("/Users/ada/.Trash");
    HelperClient client{::getuid(), {trash}};
    FileOperations operations{mac.root.path().toUtf8(), state.path().toUtf8()};

    HelperMac() { mac.makeFolder(trash); }

    FileIdentity identity(const QString& path) const {
        const auto status = mac.files.linkStatus(path);
        return status ? identityOf(*status) : FileIdentity{};
    }
    PrivilegedFileOperationItem item(const QString& path) const {
        return {.source = path, .approved = identity(path)};
    }
    PrivilegedFileOperationOutcome perform(PrivilegedFileOperationKind kind,
                                           const PrivilegedFileOperationItem& item) {
        return operations.perform({.operation = kind, .items = {item}}, client).first();
    }
    /// Moves it to the Trash, and gives its place there.
    QString trashed(const QString& path) {
        const auto moved = perform(PrivilegedFileOperationKind::moveToTrash, item(path));
        EXPECT_EQ(moved.status, PrivilegedFileOutcomeStatus::moved)
            << moved.message.value_or(QString()).toStdString();
        return moved.destination.value_or(QString());
    }
    PrivilegedFileOutcomeStatus restore(const QString& from, const QString& to) {
        return perform(PrivilegedFileOperationKind::restoreFromTrash,
                       {.source = from, .destination = to})
            .status;
    }
};

} // namespace tessellar::test
