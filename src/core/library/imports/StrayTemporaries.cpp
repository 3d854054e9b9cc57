#include "core/library/imports/StrayTemporaries.h"

#include "async/MainQueue.h"
#include "core/library/files/FinishedJob.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/removal/TrashCan.h"
#include "core/library/status/StatusLine.h"
#include "platform/Localization.h"
#include "platform/files/TrashError.h"

#include <QSet>

namespace {

using Tone = WorkspaceStatus::Tone;

std::optional<TrashError> moved(TrashCan& can, const QUrl& url)
{
    try {
        can.moveToTrash(url);
        return std::nullopt;
    } catch (const TrashError& error) {
        return error;
    }
}

void announce(StatusLine& status, int moved, const QString& error)
{
    const QString counted = QStringLiteral("Перемещено в Корзину: %d");
    if (error.isEmpty()) {
        status.showCounted(counted, {moved}, StatusIcon::Trash, Tone::Success);
        return;
    }
    const QString text =
        moved == 0 ? error : VelmoraLocalization::format(counted, {moved}) + QStringLiteral(" · ") + error;
    status.showText(text, StatusIcon::Warning, Tone::Warning);
}

} // namespace

/// What a round of moves came to.
struct StrayTemporaries::Moves {
    QSet<QUrl> gone; ///< moved now, or gone before
    int moved = 0;
    QString error; ///< the first one's text; empty if there was none
};

class StrayTemporaries::Round final : public FileRound {
public:
    explicit Round(StrayTemporaries& strays)
        : m_strays(strays)
        , m_urls(strays.m_list)
    {
    }

    QList<QUrl> begin() override { return m_urls; }

    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath /*held*/,
                                                 std::stop_token stop) override
    {
        const QUrl url = m_urls.at(file);
        auto job = [can = m_strays.m_dependencies.trashCan, url](const std::stop_token&) { return moved(*can, url); };
        const std::optional<TrashError> error =
            co_await finishedJob(m_strays.m_dependencies.executor, stop, std::move(job));
        m_moves.moved += !error;
        if (!error || error->which() == TrashError::Case::noSuchFile)
            m_moves.gone.insert(url);
        else
            co_return FileFailure{url, error->message()};
        co_return std::nullopt;
    }

    void end(const End& end) override
    {
        m_moves.error = end.firstFailure ? end.firstFailure->message : QString();
        m_strays.finish(m_moves);
    }

private:
    StrayTemporaries& m_strays;
    QList<QUrl> m_urls;
    Moves m_moves;
};

StrayTemporaries::StrayTemporaries(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_line(dependencies.locks,
             {dependencies.board, WorkKinds::MovingFiles, QStringLiteral("Перемещение в Корзину: %d из %d")})
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
    if (m_list.isEmpty() || m_isMoving || !m_dependencies.trashCan)
        return;
    m_isMoving = true;
    m_line.append(std::make_shared<Round>(*this));
    Q_EMIT changed();
}

void StrayTemporaries::finish(const Moves& moves)
{
    m_list.removeIf([&](const QUrl& url) { return moves.gone.contains(url); });
    m_isMoving = false; // first: a listener may ask for another round
    announce(m_dependencies.status, moves.moved, moves.error);
    Q_EMIT changed();
}
