#include "core/library/removal/TrashMove.h"

#include "core/library/removal/TrashCan.h"
#include "platform/files/TrashError.h"

TrashMove TrashMove::away(TrashCan& can, const QUrl& url)
{
    TrashMove move;
    move.before = FileStamp::of(url);
    try {
        move.item = can.moveToTrash(url);
        move.after = FileStamp::of(move.item->trashedURL());
    } catch (const TrashError& error) {
        move.error = error.message();
    }
    return move;
}

TrashMove TrashMove::back(TrashCan& can, const TrashedItem& item, const QUrl& url)
{
    TrashMove move;
    move.before = FileStamp::of(item.trashedURL());
    try {
        can.restore(item);
        move.after = FileStamp::of(url);
    } catch (const TrashError& error) {
        move.error = error.message();
    }
    return move;
}
