#include "core/library/artwork/Artwork.h"

#include "async/MainQueue.h"
#include "core/library/artwork/ArtworkImage.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/OriginalTags.h"
#include "core/library/tagwriting/TagFiles.h"
#include "core/library/tagwriting/TagSaver.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"

#include <limits>

namespace {

using Tone = WorkspaceStatus::Tone;

constexpr double kRetryPause = 0.12; // seconds
constexpr int kAttempts = 2;
constexpr int kFilesPerMessage = 12;
constexpr double kProgressDuration = 30; // seconds

} // namespace

/// The picture as it is written and as it is shown.
struct Artwork::Prepared {
    std::optional<QByteArray> bytes;
    QImage shown;
};

/// One request while it is carried out.
struct Artwork::Run {
    Prepared picture;
    QSet<TrackID> asked; ///< all ids of the request
    QList<Track> targets;
    QHash<TrackID, quint64> written;   ///< with the marks of their writes
    std::shared_ptr<PutBackStep> step; ///< of undo
    int failed = 0;
    QUrl firstFailedURL;
    QString firstFailure;

    void noteFailure(const QUrl& url, const QString& message)
    {
        if (failed++ > 0)
            return;
        firstFailedURL = url;
        firstFailure = message;
    }
};

Artwork::Artwork(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_tasks(std::numeric_limits<int>::max())
{
}

Artwork::~Artwork() = default;

void Artwork::assignArtwork(const QByteArray& image, const QSet<TrackID>& ids)
{
    VELMORA_ASSERT_MAIN_THREAD();
    m_tasks.add([this, image, ids](std::stop_token stop) { return prepareThenWrite(image, ids, std::move(stop)); });
}

async::Task<> Artwork::prepareThenWrite(QByteArray image, QSet<TrackID> ids, std::stop_token stop)
{
    auto prepare = [image](const std::stop_token&) {
        Prepared picture{ArtworkImage::normalizedArtworkData(image), QImage()};
        if (picture.bytes)
            picture.shown = ArtworkImage::decoded(*picture.bytes);
        return picture;
    };
    const Prepared picture =
        co_await m_dependencies.executor.run(async::Priority::UserInitiated, stop, std::move(prepare));
    if (!picture.bytes) {
        m_dependencies.status.showStatus(QStringLiteral("Не удалось подготовить выбранное изображение для обложки."),
                                         StatusIcon::Warning, Tone::Warning);
        co_return;
    }
    const std::shared_ptr<Run> run = begin(ids);
    if (!run)
        co_return;
    run->picture = picture;
    run->step = m_dependencies.originals.beginPictures(QStringLiteral("Присвоить обложку"));
    const int total = static_cast<int>(run->targets.size());
    for (int done = 0; done < total && !run->step->isUndoWanted(); ++done) {
        const Track target = run->targets.at(done);
        co_await writeOne(run, target, stop);
        if ((done + 1) % kFilesPerMessage == 0 && done + 1 < total)
            m_dependencies.status.showCounted(QStringLiteral("Сохраняем обложку: %d из %d"), {done + 1, total},
                                              StatusIcon::Cover, Tone::Neutral, kProgressDuration);
    }
    takeOver(*run);
    finish(*run);
    m_dependencies.originals.picturesWritten(run->step);
}

/// \return nothing if the request is refused.
std::shared_ptr<Artwork::Run> Artwork::begin(const QSet<TrackID>& ids)
{
    Workspace& workspace = m_dependencies.workspace;
    StatusLine& status = m_dependencies.status;
    if (workspace.artworkWritingIDs().intersects(ids)) {
        status.showStatus(QStringLiteral("Дождитесь завершения текущей записи обложек"), StatusIcon::Cover,
                          Tone::Warning);
        return nullptr;
    }
    const auto run = std::make_shared<Run>();
    run->asked = ids;
    for (const Track& track : workspace.tracks()) {
        if (ids.contains(track.id()))
            run->targets.append(track);
    }
    if (run->targets.isEmpty()) {
        if (!ids.isEmpty())
            status.showStatus(QStringLiteral("Обложка уже сохраняется"), StatusIcon::Cover, Tone::Warning);
        return nullptr;
    }
    QSet<TrackID> writing = workspace.artworkWritingIDs();
    for (const Track& target : std::as_const(run->targets))
        writing.insert(target.id());
    workspace.setArtworkWritingIDs(writing);
    status.showCounted(QStringLiteral("Сохраняем обложку: %d"), {static_cast<int>(run->targets.size())},
                       StatusIcon::Cover, Tone::Neutral);
    return run;
}

/// Two attempts; the second one after a moment, because what keeps a file busy is often gone by then.
async::Task<> Artwork::writeOne(std::shared_ptr<Run> run, Track target, std::stop_token stop)
{
    for (int attempts = 1;; ++attempts) {
        std::optional<TagFileError> failure;
        try {
            co_await attempt(run, target.id(), stop);
        } catch (const TagFileError& error) {
            failure = error;
        }
        if (!failure)
            co_return;
        if (attempts == kAttempts) {
            run->noteFailure(target.url(), failure->message());
            co_return;
        }
        co_await m_dependencies.clock.sleep(async::seconds(kRetryPause), stop);
    }
}

async::Task<> Artwork::attempt(std::shared_ptr<Run> run, TrackID id, std::stop_token stop)
{
    const Track* found = m_dependencies.workspace.tracks().find(id);
    if (!found)
        throw TagFileError(VelmoraLocalization::string(QStringLiteral("Трека больше нет в списке.")), true);
    const Track track = *found;
    const QByteArray bytes = *run->picture.bytes;
    const RowSaver::Saved saved = co_await m_dependencies.saver.writeArtwork(bytes, track, stop);
    run->written.insert(id, saved.row.pictureMark);
    if (!saved.former.isEmpty())
        run->step->add(id, {track.url(), saved.former, {}, saved.left});
}

/// Rows whose file lost the picture again meanwhile do not show it.
void Artwork::takeOver(const Run& run)
{
    Workspace& workspace = m_dependencies.workspace;
    const ArtworkData data = ArtworkData::intern(*run.picture.bytes);
    QList<Track> rows = workspace.tracks().rows();
    for (auto written = run.written.cbegin(); written != run.written.cend(); ++written) {
        const std::optional<int> row = workspace.tracks().indexOf(written.key());
        if (row && m_dependencies.saver.rows().holdsPicture(written.key(), written.value()))
            rows[*row].replaceArtwork(data, run.picture.shown);
    }
    workspace.setTracks(std::move(rows));
}

void Artwork::finish(const Run& run)
{
    Workspace& workspace = m_dependencies.workspace;
    StatusLine& status = m_dependencies.status;
    if (run.failed > 0)
        emit failed(); // told before the rows are free again
    workspace.setArtworkWritingIDs(workspace.artworkWritingIDs() - run.asked);
    emit m_dependencies.notifications.velmoraTrackMetadataDidChange(QStringLiteral("artworkBatch"), run.asked);
    const auto written = static_cast<int>(run.written.size());
    if (run.failed == 0) {
        status.showCounted(QStringLiteral("Обложка сохранена: %d"), {written}, StatusIcon::Cover, Tone::Success);
        return;
    }
    const int total = static_cast<int>(run.targets.size());
    workspace.setLastError(VelmoraLocalization::format(
                               QStringLiteral("Не удалось сохранить обложку в %d из %d файлов. Первый файл: %@. %@"),
                               {run.failed, total, FileURL::lastPathComponent(run.firstFailedURL), run.firstFailure}),
                           VelmoraLocalization::string(QStringLiteral("Не удалось сохранить обложку")));
    status.showCounted(QStringLiteral("Сохранено %d, ошибок: %d"), {written, run.failed}, StatusIcon::Warning,
                       Tone::Warning);
}
