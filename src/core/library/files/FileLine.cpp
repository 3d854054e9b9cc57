#include "core/library/files/FileLine.h"

#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "platform/Localization.h"

namespace {
constexpr int kFilesPerUpdate = 8; // chosen: rows do not lag far behind, and lists are not assigned file by file
}

struct FileLine::Running {
    std::shared_ptr<FileRound> round;
    QList<QUrl> files;
    std::stop_source stopping = {};
};

FileLine::FileLine(FileLocks& locks, const Shown& shown, int roundsAtOnce)
    : m_locks(locks)
    , m_text(shown.text)
    , m_entry(shown.board, shown.rank, shown.text)
    , m_rounds(roundsAtOnce)
{
    connect(&m_entry, &WorkEntry::stopRequested, this, &FileLine::stop);
}

FileLine::~FileLine() = default;

void FileLine::append(std::shared_ptr<FileRound> round)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_rounds.add([this, round = std::move(round)](std::stop_token stop) { return run(round, std::move(stop)); });
}

void FileLine::stop()
{
    VELMORA_ASSERT_MAIN_THREAD();
    const QList<std::shared_ptr<Running>> stopped = m_running; // some end at once
    for (const std::shared_ptr<Running>& running : stopped)
        running->stopping.request_stop();
    emit stopWanted();
}

async::Task<> FileLine::run(std::shared_ptr<FileRound> round, std::stop_token stop)
{
    const auto running = std::make_shared<Running>(Running{round, round->begin()});
    m_running.append(running);
    setProgress(m_progress.done, m_progress.total + static_cast<int>(running->files.size()));
    const FileRound::End end = co_await goThrough(running, stop);
    round->update();
    m_running.removeOne(running);
    if (m_running.isEmpty())
        setProgress(0, 0);
    else
        setProgress(m_progress.done, m_progress.total - end.left);
    round->end(end);
}

async::Task<FileRound::End> FileLine::goThrough(std::shared_ptr<Running> running, std::stop_token stop)
{
    FileRound::End end;
    const qsizetype count = running->files.size();
    qsizetype file = 0;
    for (; file < count && !running->stopping.stop_requested(); ++file) {
        FileLocks::HeldPath held = co_await hold(running->files.at(file), running, stop);
        if (!held || running->stopping.stop_requested())
            break;
        std::optional<FileFailure> failure = co_await work(running, file, std::move(held), stop);
        // That a file is gone is seen anyhow; it does not hide a reason that the user can do something about.
        if (failure && (end.failed++ == 0 || (end.firstFailure->isMissing && !failure->isMissing)))
            end.firstFailure = std::move(failure);
        setProgress(m_progress.done + 1, m_progress.total);
        if ((file + 1) % kFilesPerUpdate == 0)
            running->round->update();
    }
    end.left = static_cast<int>(count - file);
    co_return end;
}

/// Nothing if the round is to end first.
async::Task<FileLocks::HeldPath> FileLine::hold(QUrl url, std::shared_ptr<Running> running, std::stop_token stop)
{
    const std::stop_callback both(stop, [running] { running->stopping.request_stop(); });
    FileLocks::HeldPath held;
    try {
        held = co_await m_locks.hold(url, running->stopping.get_token());
    } catch (const async::Cancelled&) {
        if (stop.stop_requested())
            throw;
    }
    co_return std::move(held);
}

/// The files behind one that no one was prepared for are done nevertheless, and the round comes to its end.
async::Task<std::optional<FileFailure>> FileLine::work(std::shared_ptr<Running> running, qsizetype file,
                                                       FileLocks::HeldPath held, std::stop_token stop)
{
    std::optional<FileFailure> failure;
    try {
        failure = co_await running->round->work(file, std::move(held), stop);
    } catch (const async::Cancelled&) {
        throw;
    } catch (const std::exception&) {
        failure =
            FileFailure{running->files.at(file), VelmoraLocalization::string(QStringLiteral("Неизвестная ошибка"))};
    }
    co_return std::move(failure);
}

void FileLine::setShownAlways(bool isShownAlways)
{
    m_isShownAlways = isShownAlways;
    setProgress(m_progress.done, m_progress.total);
}

void FileLine::setProgress(int done, int total)
{
    m_progress = {done, total};
    const bool isShown = total > 1 || m_isShownAlways;
    m_entry.show(m_text, isShown ? WorkProgress{done, total} : WorkProgress());
    emit progressChanged();
}
