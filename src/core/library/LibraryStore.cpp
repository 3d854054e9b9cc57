#include "core/library/LibraryStore.h"

#include "async/MainQueue.h"
#include "core/library/LibraryConcerns.h"

LibraryStore::LibraryStore(const LibraryServices& services)
    : m_concerns(std::make_unique<LibraryConcerns>(services))
{
    VELMORA_ASSERT_MAIN_THREAD();
}

LibraryStore::~LibraryStore() = default;

Workspace& LibraryStore::workspace() const
{
    return m_concerns->workspace;
}
FileEvents& LibraryStore::fileEvents() const
{
    return m_concerns->fileEvents;
}
FileLocks& LibraryStore::fileLocks() const
{
    return m_concerns->fileLocks;
}
History& LibraryStore::history() const
{
    return m_concerns->history;
}
Selection& LibraryStore::selection() const
{
    return m_concerns->selection;
}
Favorites& LibraryStore::favorites() const
{
    return m_concerns->favorites;
}
Imports& LibraryStore::imports() const
{
    return m_concerns->imports;
}
StrayTemporaries& LibraryStore::strayTemporaries() const
{
    return m_concerns->strayTemporaries;
}
Order& LibraryStore::order() const
{
    return m_concerns->order;
}
TagWriting& LibraryStore::tagWriting() const
{
    return m_concerns->tagWriting;
}
OriginalTags& LibraryStore::originalTags() const
{
    return m_concerns->originalTags;
}
UnwrittenEdits& LibraryStore::unwrittenEdits() const
{
    return m_concerns->unwrittenEdits;
}
GivenUpEdits& LibraryStore::givenUpEdits() const
{
    return m_concerns->givenUpEdits;
}
ClosingQuestion& LibraryStore::closingQuestion() const
{
    return m_concerns->closingQuestion;
}
Tempo& LibraryStore::tempo() const
{
    return m_concerns->tempo;
}
TempoChoices& LibraryStore::tempoChoices() const
{
    return m_concerns->tempoChoices;
}
WorkBoard& LibraryStore::board() const
{
    return m_concerns->board;
}
Scheduler& LibraryStore::scheduler() const
{
    return m_concerns->scheduler;
}
Artwork& LibraryStore::artwork() const
{
    return m_concerns->artwork;
}
Sending& LibraryStore::sending() const
{
    return m_concerns->sending;
}
Keys& LibraryStore::keys() const
{
    return m_concerns->keys;
}
Session& LibraryStore::session() const
{
    return m_concerns->session;
}
Removal& LibraryStore::removal() const
{
    return m_concerns->removal;
}
Playback& LibraryStore::playback() const
{
    return m_concerns->playback;
}
Waveforms& LibraryStore::waveforms() const
{
    return m_concerns->waveforms;
}
QuickLists& LibraryStore::quickLists() const
{
    return m_concerns->quickLists;
}
StatusLine& LibraryStore::status() const
{
    return m_concerns->status;
}
Preferences& LibraryStore::preferences() const
{
    return m_concerns->services.preferences;
}
Notifications& LibraryStore::notifications() const
{
    return m_concerns->services.notifications;
}
