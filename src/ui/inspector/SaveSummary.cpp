#include "ui/inspector/SaveSummary.h"

#include "ui/inspector/InspectorModel.h"
#include "ui/text/Texts.h"

#include <bit>

namespace {

QString ofOne(const TagInventory& inventory, const AudioTags& written)
{
    if (inventory.isUnknown)
        return Texts::localized(QStringLiteral("Теги файла прочитаны не полностью: сохранение перезапишет их"));
    const qint64 lost =
        inventory.otherEntries + std::popcount(static_cast<unsigned>(inventory.lostFields(written).toInt()));
    if (inventory.hasPicture && lost > 0)
        return VelmoraLocalization::plural(QStringLiteral("Сохранение удалит обложку и %n других полей"), lost);
    if (inventory.hasPicture)
        return Texts::localized(QStringLiteral("Сохранение удалит обложку"));
    if (lost > 0)
        return VelmoraLocalization::plural(QStringLiteral("Сохранение удалит %n других полей"), lost);
    return Texts::localized(QStringLiteral("В файле нет ничего лишнего"));
}

} // namespace

namespace SaveSummary {

bool dependsOnPreference(const InspectorModel& model)
{
    return model.writableCount() > 0;
}

QString text(const InspectorModel& model, bool keepsOthers)
{
    const auto writable = model.writableCount();
    if (model.count() == 0)
        return {};
    if (writable == 0)
        return Texts::localized(QStringLiteral("Теги в файлах этого формата изменить нельзя"));
    if (model.single()) {
        if (keepsOthers)
            return Texts::localized(QStringLiteral("Обложка и прочие поля файла останутся"));
        return model.inventory() ? ofOne(*model.inventory(), model.edited()) : QString();
    }
    const QString done = Texts::localized(keepsOthers ? QStringLiteral("Обложки и прочие поля файлов останутся")
                                                      : QStringLiteral("Сохранение удалит обложки и прочие поля"));
    if (writable == model.count())
        return done;
    const QString where =
        VelmoraLocalization::format(QStringLiteral("Теги можно записать в %d из %d файлов"), {writable, model.count()});
    return where + QStringLiteral(". ") + done;
}

} // namespace SaveSummary
