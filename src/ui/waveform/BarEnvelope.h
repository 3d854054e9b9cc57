#pragma once

#include "WaveformScrubber/WaveformCache.h"
#include "async/TaskSlot.h"

#include <QObject>

#include <optional>

/// Fetches the envelope of the one file that the player's bar shows. Thread: main.
class BarEnvelope : public QObject {
    Q_OBJECT

public:
    /// None without a track; a failure lasts until the next try.
    enum class State { None, Loading, Ready, Failed };
    /// How much the file is wanted. One that merely has the focus is computed after a rest only, behind everything
    /// else.
    enum class Interest { Focused, Played };

    /// As long as the cache refuses to try a file again.
    static constexpr async::Duration kRetryDelay = async::seconds(30);
    /// A track that only has the focus is computed after so long: keys may pass by it.
    static constexpr async::Duration kRest = async::seconds(0.8);

    /// Clock and cache outlive it.
    BarEnvelope(async::Clock& clock, WaveformCache& cache, QObject* parent = nullptr);
    ~BarEnvelope() override;

    /// \param url nothing if there is none to show. The same file is asked for again only when
    /// it comes to be played, and if it failed a while ago.
    void setFile(const std::optional<QUrl>& url, Interest interest);
    /// Of the file that was set last.
    State state() const { return m_state; }
    /// Null but in the state Ready.
    const Envelope& envelope() const { return m_envelope; }

Q_SIGNALS:
    /// Another state, or another envelope.
    void changed();
    /// The cache has the envelope of a file that it may not have had before.
    void loaded(const QUrl& url);

private:
    void setState(State state, const Envelope& envelope);
    async::Task<> load(QUrl url, Interest interest, std::stop_token stop);
    async::Task<Envelope> fetch(QUrl url, Interest interest, std::stop_token stop);

    async::Clock& m_clock;
    WaveformCache& m_cache;
    std::optional<QUrl> m_url;
    Interest m_interest = Interest::Focused;
    State m_state = State::None;
    Envelope m_envelope;
    async::Duration m_failedAt{};
    async::TaskSlot m_load;
};
