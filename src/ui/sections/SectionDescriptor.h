#pragma once

#include "core/model/LibrarySection.h"
#include "platform/Notifications.h"

#include <QHash>

#include <vector>

class LibraryStore;
class QAbstractItemView;
class SectionParts;
class SectionView;
enum class TrackColumn;
struct FolderRun;
struct WindowContext;

/// All that makes a section of the window another one than its neighbours: one entry of the table of sections. What is
/// null is absent. Texts are Russian and shown through Texts::localized. The functions are called on the main thread.
struct SectionDescriptor {
    LibraryTab tab;
    /// A picture of the icon set.
    QString icon;

    /// The texts of the page and of the commands that the section words in its own way; Russian.
    struct Words {
        QString title; ///< of the page
        QString empty; ///< a sentence for a list without rows
        /// What may be dropped here.
        QString accepted = QStringLiteral("Сюда можно перетащить файлы и папки: MP3, FLAC, WAV, AIFF, M4A");
        QString add = QStringLiteral("Добавить файлы…"); ///< button that adds
        QString addFromMenu = {}; ///< the command that adds, where the main button does something else
        QString removal = {};     ///< the command that takes rows out
    } words;

    /// The columns of its table, left to right.
    const std::vector<TrackColumn>& (*columns)();
    /// The line under the title: counts and total length.
    QString (*facts)(LibraryStore& library, const QList<Track>& rows);

    /// The list, connected to the page. Null for the table of tracks.
    QAbstractItemView* (*makeList)(const WindowContext& context, SectionView& page) = nullptr;
    /// What the section has beyond header and list; owned by the page.
    SectionParts* (*makeParts)(const WindowContext& context, SectionView& page) = nullptr;
    /// The rows where they are no tracks of the store's lists. \param before what it gave last, whose values are used
    /// again.
    QList<Track> (*rows)(LibraryStore& library, const QList<Track>& before) = nullptr;
    /// The headers between the rows.
    QList<FolderRun> (*folders)(LibraryStore& library) = nullptr;
    /// What stands in the column Status, by row.
    QHash<TrackID, QString> (*statusTexts)(const LibraryStore& library) = nullptr;
    /// Why the list is empty although the section has rows, localised; empty where it has none. The command
    /// ClearFavoriteFilter shows them.
    QString (*hiddenBy)(LibraryStore& library) = nullptr;
    /// The event that moves the focus where the section keeps a selection of its own.
    void (Notifications::*navigates)(Notifications::Direction) = nullptr;

    /// Whether a click on a heading sorts, as in Favorites.
    bool sortsByHeadings = false;
    bool remembersScrolling = false; ///< and tells while it scrolls

    /// What the section is to the store.
    const LibrarySection& section() const { return LibrarySection::of(tab); }
    /// Whether the accented button of the header adds files.
    bool addsByMainButton() const { return words.addFromMenu.isEmpty(); }
};
