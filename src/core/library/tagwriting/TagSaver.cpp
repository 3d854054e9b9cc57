#include "core/library/tagwriting/TagSaver.h"

#include "async/MainQueue.h"
#include "core/library/kinds/WorkKinds.h"
#include "core/library/workspace/Workspace.h"

#include <limits>

/// One batch on the line.
class TagSaver::Round : public FileRound {
public:
    Round(TagSaver& saver, QList<Item> items, std::function<void(const Outcome&)> ended)
        : m_saver(saver)
        , m_items(std::move(items))
        , m_ended(std::move(ended))
    {
    }

    QList<QUrl> begin() override
    {
        QList<QUrl> files;
        for (const Item& item : std::as_const(m_items))
            files.append(item.track.url());
        return files;
    }

    /// The path stays held until the row has learned what the file holds now, as far as others could be misled.
    async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath held,
                                                 std::stop_token stop) override
    {
        const FileLocks::HeldPath untilTheEnd = std::move(held);
        const Item item = m_items.at(file);
        m_outcome.notWritten.insert(item.track.id()); // until it is, whatever is thrown
        const RowSaver::Saved saved = co_await change(item, stop);
        if (saved.isGivenUp) {
            ++m_givenUp;
            co_return std::nullopt;
        }
        if (!saved.failure) {
            note(saved);
            co_return std::nullopt;
        }
        FileFailure failure{saved.row.url, saved.failure->message(), saved.failure->isMissing()};
        co_return std::move(failure);
    }

    void update() override { m_saver.m_rows.learn(); }

    void end(const End& end) override
    {
        for (const Item& item : m_items.last(end.left))
            m_outcome.stopped.insert(item.track.id());
        m_outcome.notWritten.unite(m_outcome.stopped);
        if (m_ended)
            m_ended(m_outcome);
        m_saver.finish(end, m_givenUp);
    }

protected:
    virtual async::Task<RowSaver::Saved> change(Item item, std::stop_token stop) = 0;

    TagSaver& m_saver;

private:
    void note(const RowSaver::Saved& saved)
    {
        m_outcome.notWritten.remove(saved.row.id);
        if (saved.isLeftAlone) {
            m_outcome.leftAlone.insert(saved.row.id);
            return;
        }
        ++m_outcome.written;
        if (saved.isRestored)
            m_outcome.restored.insert(saved.row.id, {saved.former, saved.left});
    }

    QList<Item> m_items;
    std::function<void(const Outcome&)> m_ended;
    Outcome m_outcome;
    int m_givenUp = 0; ///< files that waited for an answer when a stop came
};

class TagSaver::Saves final : public Round {
public:
    using Round::Round;

private:
    async::Task<RowSaver::Saved> change(Item item, std::stop_token stop) override
    {
        return m_saver.m_rows.save(std::move(item), std::nullopt, std::move(stop));
    }
};

class TagSaver::Restores final : public Round {
public:
    Restores(TagSaver& saver, QList<Item> items, QHash<TrackID, PutBack> what, Wanted wanted,
             std::function<void(const Outcome&)> ended)
        : Round(saver, std::move(items), std::move(ended))
        , m_what(std::move(what))
        , m_wanted(wanted)
    {
    }

private:
    async::Task<RowSaver::Saved> change(Item item, std::stop_token stop) override
    {
        return m_saver.m_rows.restore(item.track, m_what.value(item.track.id()), m_wanted, std::move(stop));
    }

    QHash<TrackID, PutBack> m_what;
    Wanted m_wanted;
};

TagSaver::TagSaver(const Dependencies& dependencies)
    : m_dependencies(dependencies)
    , m_question(dependencies.workspace, dependencies.preferences)
    , m_rows({dependencies.workspace, dependencies.executor, dependencies.files, dependencies.events, m_question,
              dependencies.readMetadata})
    , m_line(dependencies.locks, {dependencies.board, WorkKinds::WritingTags, QStringLiteral("Запись тегов: %d из %d")},
             std::numeric_limits<int>::max()) // the workers bound what runs at once
{
    connect(&m_line, &FileLine::progressChanged, this, &TagSaver::progressChanged);
    connect(&m_line, &FileLine::stopWanted, this, [this] { m_question.withdraw(); });
    connect(&dependencies.workspace, &Workspace::askingWhatSavesKeepChanged, this,
            [this] { m_line.setShownAlways(m_dependencies.workspace.isAskingWhatSavesKeep()); });
}

TagSaver::~TagSaver() = default;

void TagSaver::write(const TrackID& id)
{
    VELMORA_ASSERT_MAIN_THREAD();
    if (const Track* track = m_dependencies.workspace.tracks().find(id))
        writeBatch({Item{*track, Others::AsPreferred, true}});
}

void TagSaver::writeBatch(const QList<Item>& items, std::function<void(const Outcome&)> ended)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<Item> asked;
    for (const Item& item : items)
        asked.append(m_rows.ask(item));
    if (!items.isEmpty())
        m_line.append(std::make_shared<Saves>(*this, asked, std::move(ended)));
}

void TagSaver::restoreBatch(const QList<Track>& tracks, const QHash<TrackID, PutBack>& what, Wanted wanted,
                            std::function<void(const Outcome&)> ended)
{
    VELMORA_ASSERT_MAIN_THREAD();
    QList<Item> items;
    for (const Track& track : tracks)
        items.append(Item{track});
    if (!items.isEmpty())
        m_line.append(std::make_shared<Restores>(*this, items, what, wanted, std::move(ended)));
}

/// A stop ends all rounds, and is told once.
void TagSaver::finish(const FileRound::End& end, int givenUp)
{
    if (end.left + givenUp > 0 || m_leftOut > 0)
        m_leftOut += end.left + givenUp + end.failed;
    if (m_leftOut > 0 && !m_line.isActive())
        emit stopped(std::exchange(m_leftOut, 0));
    if (end.firstFailure)
        emit failed(*end.firstFailure);
}

void TagSaver::cancelBatches()
{
    m_line.stop();
}

async::Task<RowSaver::Saved> TagSaver::writeArtwork(QByteArray artwork, Track track, std::stop_token stop)
{
    const Item item = m_rows.ask({track});
    const FileLocks::HeldPath held = co_await m_dependencies.locks.hold(track.url(), stop);
    RowSaver::Saved saved = co_await m_rows.save(item, artwork, stop);
    m_rows.learn();
    if (saved.failure)
        throw TagFileError(*saved.failure);
    co_return std::move(saved);
}

bool TagSaver::holdsOriginal(const QUrl& url) const
{
    return m_dependencies.files.holdsOriginal(url);
}
