#include "ui/cells/KeyState.h"

#include "core/library/keys/Keys.h"

KeyState KeyState::of(const Keys& keys, const TrackID& id)
{
    const WorkState work = keys.stateOf(id);
    if (work == WorkState::Running)
        return {Step::Running};
    if (work == WorkState::Waiting)
        return {Step::Queued};
    if (const auto found = keys.musicalKeyAnalyses().constFind(id); found != keys.musicalKeyAnalyses().cend())
        return {Step::Determined, *found};
    return {keys.undeterminedMusicalKeyIDs().contains(id) ? Step::Undetermined : Step::New};
}
