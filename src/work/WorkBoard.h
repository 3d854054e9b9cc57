#pragma once

#include "work/WorkKind.h"
#include "work/WorkLine.h"

#include <QList>
#include <QObject>
#include <QString>

class WorkBoard;

/// One kind of work as the user sees it: its text, how far it is, and a way to stop it. Held by the concern that does
/// the work; shown while there is progress to tell. Thread: main.
class WorkEntry : public QObject {
    Q_OBJECT

public:
    /// Whether the user is offered a button that ends the work. With None stop() does nothing.
    enum class Stop { Offered, None };

    /// Work in the background. \param board outlives the entry.
    /// \param kind gives rank and text; it is read here and not kept.
    WorkEntry(WorkBoard& board, const WorkKind& kind);
    /// Work that the user waits for, before all that goes on in the background. \param rank lower comes first.
    WorkEntry(WorkBoard& board, int rank, QString text, Stop stop = Stop::Offered);
    /// Takes the entry off the board, which says changed() if it was shown.
    ~WorkEntry() override;

    /// Shows how far the work is, or hides the entry where nothing is left to do. Nothing is emitted where nothing
    /// differs.
    void show(const WorkProgress& progress);
    /// The same, under another text from now on.
    void show(const QString& text, const WorkProgress& progress);
    /// Comes before other work in the background that is not ahead, whatever the ranks: the user looks for it.
    void setAhead(bool isAhead);

    /// With a place for what is done and one for all; not translated.
    const QString& text() const { return m_text; }
    /// As last shown; 0 of 0 before.
    const WorkProgress& progress() const { return m_progress; }
    /// Whether work is left by progress().
    bool isShown() const { return m_progress.done < m_progress.total; }
    /// Whether a stop is offered, by how the entry was made.
    bool isStoppable() const { return m_stop == Stop::Offered; }
    /// The user wants no more of it: emits stopRequested(). The entry stays until its concern shows other progress.
    void stop();

Q_SIGNALS:
    /// For the concern that holds the entry. Emitted where isStoppable() only, also when the entry is hidden.
    void stopRequested();

private:
    friend class WorkBoard;

    bool comesBefore(const WorkEntry& other) const;

    WorkBoard& m_board;
    const bool m_isAwaited;
    const int m_rank;
    const Stop m_stop;
    QString m_text;
    WorkProgress m_progress;
    bool m_isAhead = false;
};

/// All work that the user may see: the queues in the background, and what the user waits for. Thread: main.
class WorkBoard : public QObject {
    Q_OBJECT

public:
    WorkBoard();
    ~WorkBoard() override;

    /// What is shown, the most important first: what the user waits for, then what was set ahead, then by rank. Of
    /// equals the one that was made first comes first. The pointers are valid until the next change.
    QList<WorkEntry*> entries() const;
    /// The first of entries(); null while nothing is shown.
    WorkEntry* first() const;

Q_SIGNALS:
    /// entries(), or what one of them shows, differs.
    void changed();

private:
    friend class WorkEntry;

    QList<WorkEntry*> m_entries; ///< all, in the order in which they come
};
