#include "ui/cells/KeyState.h"

#include "core/library/keys/Keys.h"

KeyState KeyState::of(const Keys& keys, const TrackID& id)
{
    if (keys.activeMusicalKeyTrackID() == id)
        return {Step::Running};
    if (keys.analyzingMusicalKeyIDs().contains(id))
        return {Step::Queued};
    if (const auto found = keys.musicalKeyAnalyses().constFind(id); found != keys.musicalKeyAnalyses().cend())
        return {Step::Determined, *found};
    return {keys.undeterminedMusicalKeyIDs().contains(id) ? Step::Undetermined : Step::New};
}
