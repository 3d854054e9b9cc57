#include "app/Lifecycle.h"

#include <utility>

namespace {

void call(const std::function<void()>& saver)
{
    if (saver)
        saver();
}

} // namespace

Lifecycle::Lifecycle(Savers savers)
    : m_savers(std::move(savers))
{
}

void Lifecycle::scenePhaseChanged(ScenePhase phase) const
{
    if (phase != ScenePhase::Active && !m_isTerminated)
        call(m_savers.saveWorkspaceSessionNow);
}

void Lifecycle::terminate()
{
    if (std::exchange(m_isTerminated, true))
        return;
    call(m_savers.saveWorkspaceSessionSynchronouslyForTermination);
    call(m_savers.persistCurationCache);
    call(m_savers.saveTasteProfile);
}
