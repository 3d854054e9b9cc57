#include "ui/commands/Command.h"

#include "ui/text/Texts.h"

namespace {

using ID = CommandID;
constexpr Command::ActsOn kRows = Command::ActsOn::Rows;
constexpr Command::Repeat kRepeats = Command::Repeat::Yes;

bool tracksOnly(const LibrarySection& section)
{
    return section.holdsLibraryTracks();
}

bool filesOnly(const LibrarySection& section)
{
    return !section.holdsJobs;
}

bool keysOnly(const LibrarySection& section)
{
    return section.list == Track::MetadataDestination::MusicalKey;
}

void addPlayer(std::vector<Command>& all)
{
    all.insert(all.end(), {{.id = ID::PlayPause,
                            .name = QStringLiteral("playPause"),
                            .text = QStringLiteral("Воспроизвести или приостановить"),
                            .icon = QStringLiteral("play"),
                            .keys = {Qt::Key_Space}},
                           {.id = ID::PlayRow,
                            .name = QStringLiteral("playRow"),
                            .text = QStringLiteral("Воспроизвести"),
                            .icon = QStringLiteral("play")},
                           {.id = ID::SeekBack,
                            .name = QStringLiteral("seekBack"),
                            .text = QStringLiteral("Перемотать назад"),
                            .keys = {Qt::Key_Left},
                            .repeat = kRepeats},
                           {.id = ID::SeekForward,
                            .name = QStringLiteral("seekForward"),
                            .text = QStringLiteral("Перемотать вперёд"),
                            .keys = {Qt::Key_Right},
                            .repeat = kRepeats},
                           {.id = ID::PreviousTrack,
                            .name = QStringLiteral("previousTrack"),
                            .text = QStringLiteral("Предыдущий трек"),
                            .icon = QStringLiteral("previous"),
                            .keys = {Qt::Key_Up, Qt::CTRL | Qt::Key_Left},
                            .repeat = kRepeats},
                           {.id = ID::NextTrack,
                            .name = QStringLiteral("nextTrack"),
                            .text = QStringLiteral("Следующий трек"),
                            .icon = QStringLiteral("next"),
                            .keys = {Qt::Key_Down, Qt::CTRL | Qt::Key_Right},
                            .repeat = kRepeats},
                           {.id = ID::ToggleMute,
                            .name = QStringLiteral("toggleMute"),
                            .text = QStringLiteral("Выключить или включить звук"),
                            .icon = QStringLiteral("speaker-muted"),
                            .keys = {Qt::Key_M}},
                           {.id = ID::TapTempo,
                            .name = QStringLiteral("tapTempo"),
                            .text = QStringLiteral("Задать темп нажатиями"),
                            .keys = {Qt::Key_T}}});
}

void addSections(std::vector<Command>& all)
{
    const QString names[] = {QStringLiteral("showPlaylist"),  QStringLiteral("showFavorites"),
                             QStringLiteral("showCovers"),    QStringLiteral("showConverter"),
                             QStringLiteral("showAnalysis"),  QStringLiteral("showMusicalKey"),
                             QStringLiteral("showDuplicates")};
    for (LibraryTab tab : kAllLibraryTabs) {
        const int place = static_cast<int>(tab);
        all.push_back({.id = Commands::showing(tab),
                       .name = names[place],
                       .text = rawValue(tab),
                       .keys = {Qt::CTRL | static_cast<Qt::Key>(Qt::Key_1 + place)}});
    }
}

void addWindow(std::vector<Command>& all)
{
    all.insert(all.end(), {{.id = ID::AddFiles,
                            .name = QStringLiteral("addFiles"),
                            .text = QStringLiteral("Добавить файлы…"),
                            .icon = QStringLiteral("plus"),
                            .keys = {Qt::CTRL | Qt::Key_O}},
                           {.id = ID::AddFilesHere,
                            .name = QStringLiteral("addFilesHere"),
                            .text = QStringLiteral("Добавить файлы…"),
                            .icon = QStringLiteral("plus")},
                           {.id = ID::SelectAll,
                            .name = QStringLiteral("selectAll"),
                            .text = QStringLiteral("Выделить всё"),
                            .keys = {Qt::CTRL | Qt::Key_A},
                            .repeat = kRepeats},
                           {.id = ID::ShowTags,
                            .name = QStringLiteral("showTags"),
                            .text = QStringLiteral("Теги"),
                            .icon = QStringLiteral("inspector"),
                            .keys = {Qt::CTRL | Qt::Key_I},
                            .isIn = tracksOnly},
                           {.id = ID::PastePicture,
                            .name = QStringLiteral("pastePicture"),
                            .text = QStringLiteral("Вставить изображение"),
                            .icon = QStringLiteral("picture"),
                            .keys = {Qt::CTRL | Qt::Key_V}},
                           {.id = ID::Undo,
                            .name = QStringLiteral("undo"),
                            .text = QStringLiteral("Отменить"),
                            .icon = QStringLiteral("undo"),
                            .keys = {Qt::CTRL | Qt::Key_Z},
                            .repeat = kRepeats},
                           {.id = ID::Redo,
                            .name = QStringLiteral("redo"),
                            .text = QStringLiteral("Повторить"),
                            .icon = QStringLiteral("redo"),
                            .keys = {Qt::CTRL | Qt::SHIFT | Qt::Key_Z},
                            .repeat = kRepeats}});
}

void addRows(std::vector<Command>& all)
{
    all.insert(all.end(), {{.id = ID::Favorite,
                            .name = QStringLiteral("favorite"),
                            .text = QStringLiteral("Добавить в избранное или убрать"),
                            .icon = QStringLiteral("heart"),
                            .keys = {Qt::Key_F},
                            .actsOn = kRows,
                            .isIn = tracksOnly},
                           {.id = ID::AddToFavorites,
                            .name = QStringLiteral("addToFavorites"),
                            .text = QStringLiteral("Добавить в избранное"),
                            .icon = QStringLiteral("heart-filled"),
                            .actsOn = kRows,
                            .isIn = tracksOnly},
                           {.id = ID::RemoveFromFavorites,
                            .name = QStringLiteral("removeFromFavorites"),
                            .text = QStringLiteral("Убрать из избранного"),
                            .icon = QStringLiteral("heart"),
                            .actsOn = kRows,
                            .isIn = tracksOnly},
                           {.id = ID::ClearFavoriteFilter,
                            .name = QStringLiteral("clearFavoriteFilter"),
                            .text = QStringLiteral("Сбросить фильтр"),
                            .icon = QStringLiteral("close"),
                            .isIn = [](const LibrarySection& section) { return section.isFiltered; }},
                           {.id = ID::Remove,
                            .name = QStringLiteral("remove"),
                            .text = QStringLiteral("Убрать из раздела"),
                            .keys = {Qt::Key_Delete, Qt::Key_Backspace},
                            .actsOn = kRows},
                           {.id = ID::Trash,
                            .name = QStringLiteral("trash"),
                            .text = QStringLiteral("Переместить в Корзину"),
                            .hint = QStringLiteral("Отмена вернёт файлы из Корзины на место"),
                            .icon = QStringLiteral("trash"),
                            .keys = {Qt::SHIFT | Qt::Key_Delete, Qt::CTRL | Qt::Key_Backspace},
                            .actsOn = kRows,
                            .isIn = filesOnly},
                           {.id = ID::Reveal,
                            .name = QStringLiteral("revealInFinder"),
                            .text = QStringLiteral("Открыть в Finder"),
                            .icon = QStringLiteral("folder"),
                            .actsOn = kRows},
                           {.id = ID::SendToAnalysis,
                            .name = QStringLiteral("sendToAnalysis"),
                            .text = QStringLiteral("Отправить в анализ"),
                            .icon = QStringLiteral("pulse"),
                            .actsOn = kRows,
                            .isIn = tracksOnly},
                           {.id = ID::SendToConversion,
                            .name = QStringLiteral("sendToConversion"),
                            .text = QStringLiteral("Отправить в конвертер"),
                            .icon = QStringLiteral("convert"),
                            .actsOn = kRows,
                            .isIn = tracksOnly}});
}

void addTags(std::vector<Command>& all)
{
    const auto add = [&all](ID id, const QString& name, const QString& text, const QString& icon = {}) {
        all.push_back({.id = id, .name = name, .text = text, .icon = icon, .actsOn = kRows, .isIn = tracksOnly});
    };
    add(ID::AssignGenre, QStringLiteral("assignGenre"), QStringLiteral("Присвоить жанр"));
    add(ID::ClearGenre, QStringLiteral("clearGenre"), QStringLiteral("Очистить жанр"));
    add(ID::AssignComment, QStringLiteral("assignComment"), QStringLiteral("Присвоить комментарий"),
        QStringLiteral("bubble"));
    add(ID::ClearComment, QStringLiteral("clearComment"), QStringLiteral("Очистить комментарий"));
    add(ID::AssignAlbum, QStringLiteral("assignAlbum"), QStringLiteral("Изменить альбом"));
    add(ID::ClearAlbum, QStringLiteral("clearAlbum"), QStringLiteral("Очистить альбом"));
    add(ID::AssignCover, QStringLiteral("assignCover"), QStringLiteral("Присвоить обложку…"),
        QStringLiteral("picture"));
    add(ID::RestoreTags, QStringLiteral("restoreTags"), QStringLiteral("Вернуть исходные теги"));
    all.back().isIn = [](const LibrarySection& section) { return tracksOnly(section) || keysOnly(section); };
}

void addAnalyses(std::vector<Command>& all)
{
    const auto add = [&all](ID id, const QString& name, const QString& text, const QList<QKeySequence>& keys = {}) {
        all.push_back({.id = id, .name = name, .text = text, .keys = keys, .actsOn = kRows, .isIn = tracksOnly});
    };
    add(ID::DoubleTempo, QStringLiteral("doubleTempo"), QStringLiteral("Удвоить темп"), {Qt::ALT | Qt::Key_Up});
    add(ID::HalveTempo, QStringLiteral("halveTempo"), QStringLiteral("Уменьшить темп вдвое"), {Qt::ALT | Qt::Key_Down});
    add(ID::SetTempo, QStringLiteral("setTempo"), QStringLiteral("Темп"));
    add(ID::WriteTempo, QStringLiteral("writeTempo"), QStringLiteral("Записать темп в тег"));
    add(ID::DetectTempo, QStringLiteral("detectTempo"), QStringLiteral("Определить темп заново"));
    all.push_back({.id = ID::AnalyzeKeys,
                   .name = QStringLiteral("analyzeMusicalKey"),
                   .text = QStringLiteral("Определить выбранные"),
                   .icon = QStringLiteral("note"),
                   .actsOn = kRows,
                   .isIn = keysOnly});
    all.push_back({.id = ID::WriteKeys,
                   .name = QStringLiteral("writeMusicalKeyTags"),
                   .text = QStringLiteral("Записать тональность"),
                   .hint = QStringLiteral("Сохраняет найденные коды Camelot, не изменяя остальные теги."),
                   .icon = QStringLiteral("note"),
                   .actsOn = kRows,
                   .isIn = keysOnly});
    all.push_back({.id = ID::TrashLeftovers,
                   .name = QStringLiteral("trashLeftovers"),
                   .text = QStringLiteral("Временные файлы в Корзину: %d"),
                   .icon = QStringLiteral("trash")});
}

std::vector<Command> makeTable()
{
    std::vector<Command> all;
    all.reserve(kCommandCount);
    addPlayer(all);
    addSections(all);
    addWindow(all);
    addRows(all);
    addTags(all);
    addAnalyses(all);
    return all;
}

} // namespace

namespace Commands {

const std::vector<Command>& all()
{
    static const std::vector<Command> kTable = makeTable();
    return kTable;
}

const Command& of(CommandID id)
{
    return all()[static_cast<size_t>(id)];
}

CommandID showing(LibraryTab tab)
{
    return static_cast<CommandID>(static_cast<int>(CommandID::ShowPlaylist) + static_cast<int>(tab));
}

QString text(CommandID id)
{
    return Texts::localized(of(id).text);
}

QString keys(CommandID id)
{
    const QList<QKeySequence>& keys = of(id).keys;
    if (keys.isEmpty())
        return {};
    const QKeyCombination key = keys.first()[0];
    const QString modifiers = QKeySequence(key.keyboardModifiers()).toString();
    switch (key.key()) {
    case Qt::Key_Space:
        return modifiers + Texts::localized(QStringLiteral("Пробел"));
    case Qt::Key_Up:
        return modifiers + QStringLiteral("↑");
    case Qt::Key_Down:
        return modifiers + QStringLiteral("↓");
    case Qt::Key_Left:
        return modifiers + QStringLiteral("←");
    case Qt::Key_Right:
        return modifiers + QStringLiteral("→");
    default:
        return keys.first().toString();
    }
}

} // namespace Commands
