#include "core/library/status/SaveReason.h"

#include "platform/Localization.h"

#include <cerrno>

QString saveReason(int systemError)
{
    switch (systemError) {
    case ENOSPC:
    case EDQUOT:
        return VelmoraLocalization::string(QStringLiteral("на диске нет места"));
    case EACCES:
    case EPERM:
    case EROFS:
        return VelmoraLocalization::string(QStringLiteral("нет прав на запись"));
    default:
        return VelmoraLocalization::string(QStringLiteral("диск не принял запись"));
    }
}
