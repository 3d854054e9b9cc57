#include "core/library/tagwriting/AssignmentWords.h"

const AssignmentWords& AssignmentWords::of(AssignedField field)
{
    static const AssignmentWords kGenre{QStringLiteral("Записываем жанр «%@»: %d"),
                                        QStringLiteral("Жанр «%@» присвоен: %d"),
                                        QStringLiteral("Очищаем жанр: %d"),
                                        QStringLiteral("Жанр очищен: %d"),
                                        QStringLiteral("У выбранных треков жанр уже пуст"),
                                        QStringLiteral("Присвоить жанр"),
                                        QStringLiteral("Очистить жанр"),
                                        StatusIcon::Genre};
    static const AssignmentWords kComment{QStringLiteral("Записываем комментарий «%@»: %d"),
                                          QStringLiteral("Комментарий «%@» присвоен: %d"),
                                          QStringLiteral("Очищаем комментарий: %d"),
                                          QStringLiteral("Комментарий очищен: %d"),
                                          QStringLiteral("У выбранных треков комментарий уже пуст"),
                                          QStringLiteral("Присвоить комментарий"),
                                          QStringLiteral("Очистить комментарий"),
                                          StatusIcon::Comment};
    static const AssignmentWords kAlbum{QStringLiteral("Записываем альбом «%@»: %d"),
                                        QStringLiteral("Альбом «%@» присвоен: %d"),
                                        QStringLiteral("Очищаем альбом: %d"),
                                        QStringLiteral("Альбом очищен: %d"),
                                        QString(),
                                        QStringLiteral("Изменить альбом"),
                                        QStringLiteral("Изменить альбом"),
                                        StatusIcon::Album};
    switch (field) {
    case AssignedField::Genre:
        return kGenre;
    case AssignedField::Comment:
        return kComment;
    case AssignedField::Album:
        return kAlbum;
    }
    Q_UNREACHABLE();
}
