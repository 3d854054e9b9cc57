#include "core/library/tagwriting/ClosingQuestion.h"

#include "async/MainQueue.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/workspace/Workspace.h"

#include <QPointer>

#include <utility>

ClosingQuestion::ClosingQuestion(const Dependencies& dependencies)
    : m_dependencies(dependencies)
{
    connect(&dependencies.edits, &UnwrittenEdits::changed, this, &ClosingQuestion::finish);
    connect(&dependencies.workspace, &Workspace::artworkWritingIDsChanged, this, &ClosingQuestion::finish);
}

/// Not all of it is an edit of a row: covers, originals that are put back, keys of files without a row.
bool ClosingQuestion::isWriting() const
{
    return m_dependencies.saver.progress().total > 0 || !m_dependencies.workspace.artworkWritingIDs().isEmpty();
}

bool ClosingQuestion::mayClose()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QSet<TrackID>& rows = m_dependencies.edits.rows();
    if (m_state == State::Closing && m_agreed.contains(rows))
        return true; // nothing came since
    if (rows.isEmpty() && !isWriting())
        return true;
    setState(State::Asking);
    return false;
}

void ClosingQuestion::answer(Answer answer)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_state != State::Asking)
        return;
    m_hasLost = false;
    switch (answer) {
    case Answer::Stay:
        setState(State::Open);
        return;
    case Answer::Keep:
        if (m_dependencies.edits.keep()) {
            setState(State::Leaving);
            finish();
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
        m_hasTriedAgain = m_dependencies.edits.leftCount() > 0;
        if (m_hasTriedAgain)
            m_dependencies.edits.writeAgain(m_dependencies.edits.rows());
        finish();
        return;
    }
}

/// What failed may have been a moment's trouble, so all that is left is tried once more. The program stays open with
/// what cannot be written then. Covers are waited for even where edits are kept: they are not.
void ClosingQuestion::finish()
{
    if (m_state == State::Leaving && m_dependencies.workspace.artworkWritingIDs().isEmpty())
        close();
    if (m_state != State::Finishing || m_isTryingAgain || isWriting())
        return;
    if (m_dependencies.edits.rows().isEmpty()) {
        close();
        return;
    }
    if (!std::exchange(m_hasTriedAgain, true)) {
        m_isTryingAgain = true;
        async::MainQueue::post([self = QPointer(this)] {
            if (self)
                self->writeAgain();
        });
        return;
    }
    stayOpen();
}

/// On the next turn: a batch tells its failures after its end.
void ClosingQuestion::close()
{
    async::MainQueue::post([self = QPointer(this)] {
        const bool waits = self && (self->m_state == State::Finishing || self->m_state == State::Leaving);
        if (!waits ||
            (self->m_state == State::Finishing && (self->isWriting() || !self->m_dependencies.edits.rows().isEmpty())))
            return;
        if (self->m_hasLost) {
            self->stayOpen();
            return;
        }
        self->setState(State::Closing);
        emit self->closeWanted();
    });
}

void ClosingQuestion::stayOpen()
{
    setState(State::Open);
    m_dependencies.status.showStatus(QStringLiteral("Velmora не закрыта: не все правки удалось записать"),
                                     StatusIcon::Warning, WorkspaceStatus::Tone::Warning);
}

/// Not inside the end of a batch.
void ClosingQuestion::writeAgain()
{
    m_isTryingAgain = false;
    m_dependencies.edits.writeAgain(m_dependencies.edits.rows());
    finish();
}

void ClosingQuestion::setState(State state)
{
    const bool wasAsking = isAsking();
    m_state = state;
    m_agreed = state == State::Closing ? m_dependencies.edits.rows() : QSet<TrackID>();
    if (wasAsking != isAsking())
        emit changed();
}
