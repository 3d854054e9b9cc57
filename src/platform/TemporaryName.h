#pragma once

#include <QByteArrayView>

/// Names of the files that a write builds beside its target.
namespace TemporaryName {

/// Whether a file name is ".velmora-", a UUID, a point and an extension. \param fileName without a folder, in the
/// bytes of the file system.
bool matches(QByteArrayView fileName);

} // namespace TemporaryName
