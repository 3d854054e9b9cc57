#include "tags/writing/WriteErrors.h"

#include "platform/FileURL.h"
#include "platform/Localization.h"

#include <cerrno>

namespace {

struct FileText {
    QLatin1StringView name;
    QString text;
};

/// In the order of the cases.
const FileText& textOf(FileError::Case which)
{
    static const FileText kTexts[] = {
        {QLatin1StringView("fileNoSuchFile"), QStringLiteral("Файл %@ не найден.")},
        {QLatin1StringView("fileReadCorruptFile"), QStringLiteral("Файл %@ повреждён или прочитан не полностью.")},
        {QLatin1StringView("fileReadNoPermission"), QStringLiteral("Нет прав на чтение файла %@.")},
        {QLatin1StringView("fileWriteNoPermission"), QStringLiteral("Нет прав на запись файла %@ или его папки.")},
        {QLatin1StringView("fileWriteOutOfSpace"), QStringLiteral("Файл %@ не сохранён: недостаточно места.")},
        {QLatin1StringView("fileWriteVolumeReadOnly"),
         QStringLiteral("Файл %@ не сохранён: том доступен только для чтения.")},
        {QLatin1StringView("fileWriteUnknown"), QStringLiteral("Не удалось записать файл %@.")},
    };
    return kTexts[static_cast<int>(which)];
}

} // namespace

FileError::FileError(Case what, const QString& path, int systemError)
    : m_case(what)
    , m_path(path)
    , m_systemError(systemError)
{
}

FileError FileError::fromReading(int systemError, const QString& path)
{
    switch (systemError) {
    case ENOENT:
    case ENOTDIR:
        return FileError(Case::fileNoSuchFile, path, systemError);
    case EACCES:
    case EPERM:
        return FileError(Case::fileReadNoPermission, path, systemError);
    default:
        return FileError(Case::fileReadCorruptFile, path, systemError);
    }
}

FileError FileError::fromWriting(int systemError, const QString& path)
{
    switch (systemError) {
    case EACCES:
    case EPERM:
        return FileError(Case::fileWriteNoPermission, path, systemError);
    case EROFS:
        return FileError(Case::fileWriteVolumeReadOnly, path, systemError);
    case ENOSPC:
    case EDQUOT:
    case EFBIG: // beyond what the file system or the process may have in one file
        return FileError(Case::fileWriteOutOfSpace, path, systemError);
    default:
        return FileError(Case::fileWriteUnknown, path, systemError);
    }
}

QLatin1StringView FileError::caseName() const
{
    return textOf(m_case).name;
}

QString FileError::message() const
{
    // Of an unknown failure the system may know more.
    const Case told = m_case == Case::fileWriteUnknown ? fromWriting(m_systemError, m_path).which() : m_case;
    return VelmoraLocalization::format(textOf(told).text, {FileURL::lastPathComponent(FileURL::fromPath(m_path))});
}

WriteError::WriteError(Case what, const QString& payload)
    : m_case(what)
    , m_payload(payload)
{
}

QLatin1StringView WriteError::caseName() const
{
    switch (m_case) {
    case Case::unsupportedFormat:
        return QLatin1StringView("unsupportedFormat");
    case Case::rewriteFailed:
        return QLatin1StringView("rewriteFailed");
    case Case::artworkVerificationFailed:
        return QLatin1StringView("artworkVerificationFailed");
    }
    return {};
}

QString WriteError::message() const
{
    switch (m_case) {
    case Case::unsupportedFormat:
        return VelmoraLocalization::format(QStringLiteral("macOS не может безопасно перезаписать теги в формате .%@."),
                                           {m_payload});
    case Case::rewriteFailed:
        return VelmoraLocalization::format(
            QStringLiteral("Не удалось сохранить теги в формате .%@. Для MP3 используется прямое ID3‑сохранение; "
                           "другие контейнеры могут быть доступны только для чтения."),
            {m_payload});
    case Case::artworkVerificationFailed:
        return VelmoraLocalization::format(
            QStringLiteral("Файл %@ был перезаписан, но новая обложка не прошла проверку."), {m_payload});
    }
    return {};
}
