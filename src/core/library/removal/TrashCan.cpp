#include "core/library/removal/TrashCan.h"

#include "platform/FileURL.h"
#include "platform/files/TrashError.h"

TrashedItem TrashCan::moveToTrash(const QUrl& url)
{
    throw TrashError(TrashError::Case::unavailable, url.toLocalFile().toUtf8());
}

void TrashCan::restore(const TrashedItem&)
{
    throw TrashError(TrashError::Case::noSuchFile, {});
}

TrashCan& TrashCan::none()
{
    static TrashCan can;
    return can;
}
