#pragma once

#include <QByteArray>
#include <QString>

namespace tessellar::sample {

/// The bytes of a Finder alias file that points to `target`, an absolute path of the sample Mac.
QByteArray aliasFileBytes(const QString& target);

} // namespace tessellar::sample
