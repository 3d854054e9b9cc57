#pragma once

#include <QByteArray>

#include <sys/types.h>

/// Makes a folder and those above it that are missing. \param path absolute. \param mode of each new one, less the
/// process's mask. \return 0 if a folder stands there now, else errno. Thread: any.
int makeFolders(const QByteArray& path, mode_t mode);
