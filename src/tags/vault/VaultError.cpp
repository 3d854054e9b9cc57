#include "tags/vault/VaultError.h"

#include "platform/FileURL.h"
#include "platform/Localization.h"

#include <cerrno>

namespace {

/// Of failures that the user can do something about; else nothing.
QString reasonOf(int systemError)
{
    switch (systemError) {
    case ENOSPC:
    case EDQUOT:
        return VelmoraLocalization::string(QStringLiteral("На диске с данными программы недостаточно места."));
    case EFBIG:
        return VelmoraLocalization::string(QStringLiteral("Они больше, чем хранилище копий вмещает."));
    case EACCES:
    case EPERM:
    case EROFS:
        return VelmoraLocalization::string(QStringLiteral("Нет прав на запись в папку данных программы."));
    default:
        return {};
    }
}

QString textOf(VaultError::Case which)
{
    switch (which) {
    case VaultError::Case::noEntry:
        return QStringLiteral("Исходные теги не подходят к файлу %@: его звук с тех пор изменился.");
    case VaultError::Case::cannotKeep:
        return QStringLiteral("Исходные теги файла %@ не удалось сохранить в копию, поэтому файл не изменён.");
    case VaultError::Case::damaged:
        return QStringLiteral("Копия исходных тегов файла %@ повреждена.");
    }
    return {};
}

} // namespace

VaultError::VaultError(Case what, const QString& path, int systemError)
    : m_case(what)
    , m_path(path)
    , m_systemError(systemError)
{
}

QLatin1StringView VaultError::caseName() const
{
    switch (m_case) {
    case Case::noEntry:
        return QLatin1StringView("noEntry");
    case Case::cannotKeep:
        return QLatin1StringView("cannotKeep");
    case Case::damaged:
        return QLatin1StringView("damaged");
    }
    return {};
}

QString VaultError::message() const
{
    const QString name = FileURL::lastPathComponent(FileURL::fromPath(m_path));
    const QString text = VelmoraLocalization::format(textOf(m_case), {name});
    const QString reason = m_case == Case::cannotKeep ? reasonOf(m_systemError) : QString();
    return reason.isEmpty() ? text : text + u' ' + reason;
}
