#pragma once

#include <functional>

/// What the life of the process asks of those who keep data: saving on a loss of activity and at the end. Thread:
/// main.
class Lifecycle {
public:
    /// Whether the window has the user's attention: it does, another program does, or it is hidden.
    enum class ScenePhase { Active, Inactive, Background };

    /// The savers; an empty one means that there is nothing of its kind to save.
    struct Savers {
        std::function<void()> saveWorkspaceSessionNow;
        std::function<void()> saveWorkspaceSessionSynchronouslyForTermination;
        std::function<void()> persistCurationCache;
        std::function<void()> saveTasteProfile;
    };

    explicit Lifecycle(Savers savers);

    /// Saves in any phase but the active one.
    void scenePhaseChanged(ScenePhase phase) const;
    /// Saves the workspace, then the curation cache, then the taste profile. Later calls do nothing.
    void terminate();

private:
    Savers m_savers;
    bool m_isTerminated = false;
};
