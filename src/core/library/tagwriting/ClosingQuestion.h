#pragma once

#include "core/model/Track.h"

#include <QObject>
#include <QSet>

class StatusLine;
class TagSaver;
class UnwrittenEdits;
class Workspace;

/// Whether the window may close: with edits that are not in their files, and while tags or covers are being written,
/// the user is asked. Thread: main.
class ClosingQuestion : public QObject {
    Q_OBJECT

public:
    /// Write them first and close then, keep them for the next start, or go on.
    enum class Answer { Finish, Keep, Stay };

    struct Dependencies {
        Workspace& workspace;
        UnwrittenEdits& edits;
        TagSaver& saver;
        StatusLine& status;
    };

    explicit ClosingQuestion(const Dependencies& dependencies);

    /// Whether the window may close now; if not, the question is asked, and closeWanted() may come of it.
    bool mayClose();
    /// Something was not written that is no edit of a row, and so is not kept: a cover, a key, a tempo.
    void noteLoss() { m_hasLost = true; }
    bool isAsking() const { return m_state == State::Asking; }
    /// The user's answer; ignored where no question is asked. Finish tries once more what failed before, and stays
    /// open with what cannot be written then; Keep stays open where the edits cannot be kept on disk. The status line
    /// says so.
    void answer(Answer answer);

Q_SIGNALS:
    /// isAsking() changed.
    void changed();
    /// What the user wanted is done.
    void closeWanted();

private:
    enum class State { Open, Asking, Finishing, Leaving, Closing };

    void setState(State state);
    bool isWriting() const;
    void finish();
    void close();
    void stayOpen();
    void writeAgain();

    Dependencies m_dependencies;
    bool m_isTryingAgain = false; ///< the second try is about to begin
    bool m_hasTriedAgain = false;
    bool m_hasLost = false; ///< since the last answer
    State m_state = State::Open;
    QSet<TrackID> m_agreed; ///< rows with edits that may wait for the next start
};
