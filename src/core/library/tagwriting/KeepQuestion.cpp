#include "core/library/tagwriting/KeepQuestion.h"

#include "async/MainQueue.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"

KeepQuestion::KeepQuestion(Workspace& workspace, Preferences& preferences)
    : m_workspace(workspace)
    , m_preferences(preferences)
{
    connect(&preferences, &Preferences::changed, this, &KeepQuestion::preferenceChanged);
}

KeepQuestion::~KeepQuestion() = default;

bool KeepQuestion::isOpen() const
{
    return !m_preferences.keepsOtherTagEntries.get() && !m_preferences.keepsOtherTagEntriesAsked.get();
}

bool KeepQuestion::mayKeep() const
{
    return m_preferences.keepsOtherTagEntries.get() || isOpen();
}

async::Task<std::optional<bool>> KeepQuestion::keepsOthers(TagInventory inventory, AudioTags written,
                                                           bool replacesPicture, std::stop_token stop)
{
    if (!isOpen() || !inventory.losesAnything(written, replacesPicture))
        co_return m_preferences.keepsOtherTagEntries.get();
    if (!m_answer)
        m_answer = std::make_unique<async::Completion<std::optional<bool>>>();
    m_workspace.setAskingWhatSavesKeep(true);
    const std::optional<bool> answer = co_await m_answer->wait(stop);
    co_return answer;
}

void KeepQuestion::answer(bool keepsOthers)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_workspace.setAskingWhatSavesKeep(false); // first: setting the preference comes back here
    m_preferences.keepsOtherTagEntriesAsked.set(true);
    m_preferences.keepsOtherTagEntries.set(keepsOthers);
    if (m_answer)
        m_answer->resolve(keepsOthers);
    m_answer.reset();
}

void KeepQuestion::withdraw()
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_workspace.setAskingWhatSavesKeep(false);
    if (const auto waiting = std::exchange(m_answer, nullptr))
        waiting->resolve(std::nullopt);
}

/// A user who sets the preference has answered as well.
void KeepQuestion::preferenceChanged(const QString& key)
{
    if (key == m_preferences.keepsOtherTagEntries.key() && m_workspace.isAskingWhatSavesKeep())
        answer(m_preferences.keepsOtherTagEntries.get());
}
