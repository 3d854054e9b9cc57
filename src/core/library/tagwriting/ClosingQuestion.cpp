#include "core/library/tagwriting/ClosingQuestion.h"

#include "async/MainQueue.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/tagwriting/UnwrittenEdits.h"

ClosingQuestion::ClosingQuestion(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.edits, &UnwrittenEdits::changed, this, &ClosingQuestion::finish);
}

bool ClosingQuestion::mayClose()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_state == State::Closing || m_dependencies.edits.rows().isEmpty())
        return true;
    setState(State::Asking);
    return false;
}

void ClosingQuestion::answer(Answer answer)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_state != State::Asking)
        return;
    switch (answer) {
    case Answer::Stay:
        setState(State::Open);
        return;
    case Answer::Keep:
        if (m_dependencies.edits.keep()) {
            setState(State::Closing);
            emit closeWanted();
        } else {
            setState(State::Open);
            m_dependencies.status.showStatus(QStringLiteral("Правки не удалось сохранить до следующего запуска"),
                                             StatusIcon::Warning, WorkspaceStatus::Tone::Warning);
        }
        return;
    case Answer::Finish:
        setState(State::Finishing);
        m_dependencies.status.showStatus(QStringLiteral("Velmora закроется, когда правки будут записаны"),
                                         StatusIcon::Warning, WorkspaceStatus::Tone::Neutral);
        if (m_dependencies.edits.leftCount() > 0)
            m_dependencies.edits.writeAgain(m_dependencies.edits.rows());
        finish();
        return;
    }
}

/// The program stays open with what could not be written: the failure has its own message.
void ClosingQuestion::finish()
{
    if (m_state != State::Finishing || m_dependencies.saver.progress().total > 0)
        return;
    const bool isDone = m_dependencies.edits.rows().isEmpty();
    setState(isDone ? State::Closing : State::Open);
    if (isDone)
        emit closeWanted();
}

void ClosingQuestion::setState(State state)
{
    const bool wasAsking = isAsking();
    m_state = state;
    if (wasAsking != isAsking())
        emit changed();
}
