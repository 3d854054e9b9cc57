#include "core/library/imports/StrayTemporaries.h"

#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "core/library/status/StatusLine.h"
#include "platform/Localization.h"
#include "platform/files/TrashError.h"

#include <QSet>

namespace {

using Tone = WorkspaceStatus::Tone;

/// What a round of moves came to.
struct Moves {
    QSet<QUrl> gone; ///< moved now, or gone before
    int moved = 0;
    QString error; ///< the first one's text; empty if there was none
};

Moves moveAll(const QList<QUrl>& urls, const std::function<void(const QUrl&)>& moveToTrash, const std::stop_token& stop)
{
    Moves moves;
    for (const QUrl& url : urls) {
        if (stop.stop_requested())
            throw async::Cancelled();
        try {
            moveToTrash(url);
            moves.gone.insert(url);
            ++moves.moved;
        } catch (const TrashError& error) {
            if (error.which() == TrashError::Case::noSuchFile)
                moves.gone.insert(url);
            else if (moves.error.isEmpty())
                moves.error = error.message();
        }
    }
    return moves;
}

void announce(StatusLine& status, const Moves& moves)
{
    const QString counted = QStringLiteral("Перемещено в Корзину: %d");
    if (moves.error.isEmpty()) {
        status.showCounted(counted, {moves.moved}, QStringLiteral("trash"), Tone::Success);
        return;
    }
    const QString text =
        moves.moved == 0 ? moves.error
                         : VelmoraLocalization::format(counted, {moves.moved}) + QStringLiteral(" · ") + moves.error;
    status.showText(text, QStringLiteral("exclamationmark.triangle"), Tone::Warning);
}

} // namespace

StrayTemporaries::StrayTemporaries(Dependencies dependencies)
    : m_dependencies(std::move(dependencies))
{
}

StrayTemporaries::~StrayTemporaries() = default;

void StrayTemporaries::add(const QList<QUrl>& urls)
{
    VELMORA_ASSERT_MAIN_THREAD();
    const qsizetype before = m_list.size();
    QSet<QUrl> known(m_list.cbegin(), m_list.cend());
    for (const QUrl& url : urls) {
        if (known.contains(url))
            continue;
        known.insert(url);
        m_list.append(url);
    }
    if (m_list.size() != before)
        Q_EMIT changed();
}

void StrayTemporaries::moveToTrash()
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (m_list.isEmpty() || isMoving())
        return;
    m_task.start([this](std::stop_token stop) { return moveTask(m_list, stop); });
    Q_EMIT changed();
}

async::Task<> StrayTemporaries::moveTask(QList<QUrl> urls, std::stop_token stop)
{
    auto job = [urls, moveToTrash = m_dependencies.moveToTrash](std::stop_token jobStop) {
        return moveAll(urls, moveToTrash, jobStop);
    };
    const Moves moves = co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(job));
    m_list.removeIf([&](const QUrl& url) { return moves.gone.contains(url); });
    m_task.cancel(); // over but for its last lines: whoever hears of the change may ask for another round
    announce(m_dependencies.status, moves);
    Q_EMIT changed();
}
