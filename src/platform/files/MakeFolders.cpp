#include "platform/files/MakeFolders.h"

#include "platform/files/FileCalls.h"

#include <cerrno>

int makeFolders(const QByteArray& path, mode_t mode)
{
    FileCalls& calls = FileCalls::current();
    struct statx facts;
    if (calls.facts(path, 0, &facts) == 0)
        return S_ISDIR(facts.stx_mode) ? 0 : ENOTDIR;
    const qsizetype slash = path.lastIndexOf('/');
    if (errno != ENOENT)
        return errno;
    if (slash > 0) {
        if (const int error = makeFolders(path.first(slash), mode))
            return error;
    }
    // Another process may be at the same.
    return calls.makeFolder(path, mode) == 0 || errno == EEXIST ? 0 : errno;
}
