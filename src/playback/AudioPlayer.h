#pragma once

#include "async/TaskSlot.h"
#include "core/model/Track.h"
#include "playback/AudioPlaybackProgress.h"
#include "playback/AudioVolumeState.h"
#include "playback/PlaybackClock.h"
#include "playback/SeekFade.h"
#include "playback/VolumeStore.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>
#include <stop_token>
#include <vector>

class AudioFilePlayer;
class AudioSystem;
enum class AudioOutputEvent;
class Notifications;
class Preferences;

namespace async {
class Clock;
class Executor;
} // namespace async

/// Plays one track at a time for the whole program: owns the system's player object, publishes what the window shows,
/// seeks without clicks, and gives the waveform a position that is smooth and corrected for the output's latency.
/// States: idle (no file), opening, playing, paused, finished. Thread: main.
///
/// Files are opened on a worker of their own. What is asked of the player meanwhile (toggle, seek, volume …) is done in
/// its order as soon as the file is open; another play() or stopAndClear() gives the opening up. The published track is
/// the one before until then.
class AudioPlayer : public QObject {
    Q_OBJECT

public:
    /// What the player stands on; outlives it.
    struct Services {
        async::Clock& clock;
        async::Executor& executor;
        Preferences& preferences;
        Notifications& notifications;
        AudioSystem& audio;
    };

    /// What the player tells the rest of the program; a function may be empty.
    struct Listeners {
        /// The store, after every change of state.
        std::function<void(bool isPlaying, const std::optional<TrackID>& currentTrackID)> playbackStateDidChange;
        /// The waveform preload, after every change of state. \c currentURL is empty without a track.
        std::function<void(bool isPlaying, const QUrl& currentURL)> waveformPlaybackDidChange;
        /// A file could not be opened: the text for the alert.
        std::function<void(const QString& message, const QUrl& file)> fail;
        /// What the output tells: a text for the status line, and whether it is a warning.
        std::function<void(const QString& message, bool isWarning)> report;
    };

    /// Takes the volume of the last run up. \param services all outlive the player.
    explicit AudioPlayer(const Services& services);
    ~AudioPlayer() override;

    /// Set once by the application, when the store exists.
    void setListeners(Listeners listeners);

    /// The track that sounds, is paused or has ended; nothing while idle.
    const std::optional<TrackID>& currentID() const { return m_currentID; }
    /// Copy of the track as it was when it was started.
    const std::optional<Track>& currentTrack() const { return m_currentTrack; }
    /// Sound goes out, or would without a device. False while a file is being opened.
    bool isPlaying() const { return m_isPlaying; }
    /// A file is being opened and will then be played.
    bool isOpening() const { return m_openingTrack.has_value(); }
    /// Opening takes so long that the user should see that the click was heard: longer than 0.2 s.
    bool isOpeningSlowly() const { return m_isOpeningSlowly; }
    /// What was asked for last: the track that is being opened, else the current one.
    const std::optional<Track>& requestedTrack() const { return m_openingTrack ? m_openingTrack : m_currentTrack; }
    /// Position and length, told apart from the player's own signals.
    AudioPlaybackProgress& progress() { return m_progress; }
    /// The volume as it was set last, told apart from the player's own signals too.
    AudioVolumeState& volumeState() { return m_volumeState; }

    /// Starts a track, toggles the current one, restarts the finished one. A track that is being opened is paused or
    /// goes on once it is open.
    void play(const Track& track);
    /// Play or pause; nothing without a file.
    void toggle();
    /// Ends the sound, gives up an opening and forgets the track.
    void stopAndClear();
    /// Relative seek in seconds.
    void seek(double by);
    /// Absolute seek in seconds. \param reportCompletionAtEnd the target is the end: tell the completion there.
    void scheduleSeek(double to, bool reportCompletionAtEnd);
    /// The user holds the position by hand: ticks publish nothing meanwhile.
    void setScrubbing(bool scrubbing);
    /// As setScrubbing() was last told.
    bool isScrubbing() const { return m_isScrubbing; }
    /// Kept within 0 and 1, a value that is no number is ignored; stored 250 ms after the last change.
    void setVolume(double volume);
    /// Position of what is being heard as a fraction 0 to 1. Costs a clock read; for drawing at the screen's rate.
    double synchronizedWaveformProgress() const;
    /// Whether it is the current track, by id or by standardized location.
    bool matchesCurrentTrack(const Track& track) const;

Q_SIGNALS:
    /// Another track or none; its file is open by then.
    void currentTrackChanged();
    /// isPlaying() differs.
    void isPlayingChanged();
    /// At the limit of patience, and when the opening that passed it has ended in any way.
    void isOpeningSlowlyChanged();

private:
    using Operation = std::function<void()>;
    /// A file that ended by itself while a seek was on its way is completed if the seek leads this close to the end.
    /// Seconds.
    static constexpr double kEndMargin = 0.5;

    // Opening.
    void startOpening(const Track& track);
    async::Task<> openFile(Track track, std::stop_token stop);
    async::Task<> tellSlowOpening(std::stop_token stop);
    void setOpeningSlowly(bool isSlow);
    void endOpening();
    void finishOpening(const Track& track, std::shared_ptr<AudioFilePlayer> audio);
    void openingFailed(const QUrl& file);
    void runDeferred(const std::vector<Operation>& operations);
    void watchEnd();
    void dropAudio();

    // Starting, stopping and what follows from outside.
    void restart();
    void startAudio();
    void fileEnded(const std::weak_ptr<AudioFilePlayer>& ended, bool successfully);
    void reportCompletion();
    void outputChanged(AudioOutputEvent event);
    bool outputLost();

    // Seeking.
    void finishSeek(double target, bool reportCompletionAtEnd);
    void cancelPendingSeek(bool restoreVolume);

    // The position that is shown.
    void setAnchor(double trackTime);
    void tick();
    async::Task<> refreshRegularly(std::stop_token stop);
    void refreshPlaybackPosition();
    double resolvedPlaybackTime() const;
    void publishPosition();

    // Publishing.
    void setCurrentTrack(const std::optional<Track>& track);
    void setIsPlaying(bool isPlaying);
    void clearPublished();
    void publishPlaybackState();
    void report(const QString& message, bool isWarning) const;

    Services m_services;
    Listeners m_listeners;
    AudioPlaybackProgress m_progress;
    AudioVolumeState m_volumeState;
    std::optional<TrackID> m_currentID;
    std::optional<Track> m_currentTrack;
    std::optional<Track> m_openingTrack;
    bool m_isPlaying = false;
    bool m_isOpeningSlowly = false;
    bool m_isScrubbing = false;
    bool m_didReportCompletion = false;
    double m_outputLatency = 0; ///< seconds, measured at each start
    std::shared_ptr<AudioFilePlayer> m_audio;
    std::optional<PlaybackClock::Anchor> m_anchor;
    std::vector<Operation> m_deferred; ///< asked for while the file is being opened
    VolumeStore m_volumeStore;
    SeekFade m_seek;
    async::TaskSlot m_openTask;
    async::TaskSlot m_slowOpening;
    async::TaskSlot m_ticks;
};
