#include "platform/files/TrashError.h"

#include "platform/Localization.h"

#include <cerrno>

namespace {

QString textOf(TrashError::Case which)
{
    switch (which) {
    case TrashError::Case::noSuchFile:
        return QStringLiteral("Файл %@ не найден.");
    case TrashError::Case::fileExists:
        return QStringLiteral("На месте файла %@ уже стоит другой файл.");
    case TrashError::Case::noPermission:
        return QStringLiteral("Нет прав на перемещение файла %@.");
    case TrashError::Case::unavailable:
        return QStringLiteral("Корзина недоступна на томе с файлом %@.");
    case TrashError::Case::outOfSpace:
        return QStringLiteral("Файл %@ не перемещён: недостаточно места.");
    case TrashError::Case::readOnlyVolume:
        return QStringLiteral("Файл %@ не перемещён: том доступен только для чтения.");
    case TrashError::Case::unknown:
        break;
    }
    return QStringLiteral("Не удалось переместить файл %@.");
}

} // namespace

TrashError::TrashError(Case what, QByteArray path, int systemError)
    : m_case(what)
    , m_path(std::move(path))
    , m_systemError(systemError)
{
}

TrashError TrashError::fromChange(int systemError, const QByteArray& path)
{
    switch (systemError) {
    case ENOENT:
    case ENOTDIR:
        return TrashError(Case::noSuchFile, path, systemError);
    case EEXIST:
    case ENOTEMPTY:
        return TrashError(Case::fileExists, path, systemError);
    case EACCES:
    case EPERM:
        return TrashError(Case::noPermission, path, systemError);
    case EXDEV:
        return TrashError(Case::unavailable, path, systemError);
    case ENOSPC:
    case EDQUOT:
        return TrashError(Case::outOfSpace, path, systemError);
    case EROFS:
        return TrashError(Case::readOnlyVolume, path, systemError);
    default:
        return TrashError(Case::unknown, path, systemError);
    }
}

QString TrashError::message() const
{
    return VelmoraLocalization::format(textOf(m_case), {QString::fromUtf8(m_path.mid(m_path.lastIndexOf('/') + 1))});
}
