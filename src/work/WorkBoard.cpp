#include "work/WorkBoard.h"

#include "async/MainQueue.h"

#include <algorithm>
#include <tuple>

WorkEntry::WorkEntry(WorkBoard& board, const WorkKind& kind)
    : m_board(board)
    , m_isAwaited(false)
    , m_rank(kind.rank)
    , m_stop(Stop::Offered)
    , m_text(QString::fromUtf8(kind.text))
{
    m_board.m_entries.append(this);
}

WorkEntry::WorkEntry(WorkBoard& board, int rank, QString text, Stop stop)
    : m_board(board)
    , m_isAwaited(true)
    , m_rank(rank)
    , m_stop(stop)
    , m_text(std::move(text))
{
    m_board.m_entries.append(this);
}

WorkEntry::~WorkEntry()
{
    m_board.m_entries.removeOne(this);
    if (isShown())
        emit m_board.changed();
}

void WorkEntry::show(const WorkProgress& progress)
{
    show(QString(m_text), progress);
}

void WorkEntry::show(const QString& text, const WorkProgress& progress)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const bool wasShown = isShown();
    const bool differs = m_text != text || m_progress != progress;
    m_text = text;
    m_progress = progress;
    if (differs && (wasShown || isShown()))
        emit m_board.changed();
}

void WorkEntry::setAhead(bool isAhead)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (std::exchange(m_isAhead, isAhead) != isAhead && isShown())
        emit m_board.changed();
}

void WorkEntry::stop()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (isStoppable())
        emit stopRequested();
}

bool WorkEntry::comesBefore(const WorkEntry& other) const
{
    return std::tuple(!m_isAwaited, !m_isAhead, m_rank) <
           std::tuple(!other.m_isAwaited, !other.m_isAhead, other.m_rank);
}

WorkBoard::WorkBoard() = default;
WorkBoard::~WorkBoard() = default;

QList<WorkEntry*> WorkBoard::entries() const
{
    QList<WorkEntry*> shown;
    std::ranges::copy_if(m_entries, std::back_inserter(shown), &WorkEntry::isShown);
    std::ranges::stable_sort(shown, [](const WorkEntry* a, const WorkEntry* b) { return a->comesBefore(*b); });
    return shown;
}

WorkEntry* WorkBoard::first() const
{
    const QList<WorkEntry*> shown = entries();
    return shown.isEmpty() ? nullptr : shown.first();
}
