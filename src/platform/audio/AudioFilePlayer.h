#pragma once

#include <QList>
#include <QString>

#include <functional>
#include <memory>
#include <stop_token>

/// One opened file that can be heard: the system's player object. Calls return at once and never block on the device or
/// the disk; what they ask for happens in their order, a few milliseconds later. Times are seconds. Thread: main, but
/// it may be destroyed on any thread.
class AudioFilePlayer {
public:
    virtual ~AudioFilePlayer() = default;

    /// Starts or resumes; at the end of the file it starts from the beginning.
    virtual void play() = 0;
    /// The sound fades out within a few milliseconds, so that it does not end with a click; the position stays.
    virtual void pause() = 0;
    /// Ends the sound and keeps the position.
    virtual void stop() = 0;
    /// False also after the end was reached and after the output device was lost.
    virtual bool isPlaying() const = 0;
    /// Position of the next frame that goes to the device; the target itself from the moment of setCurrentTime() on.
    virtual double currentTime() const = 0;
    /// Goes to a place, kept between 0 and duration(). What plays goes on there; a file whose end was heard stays
    /// silent until play().
    virtual void setCurrentTime(double seconds) = 0;
    /// Length of the file; becomes the true one when the end is met, should the file have told another.
    virtual double duration() const = 0;
    /// The device's clock: counts the sound that has gone out since the opening, whatever the position, and stands
    /// still while nothing goes out. Never goes back.
    virtual double deviceCurrentTime() const = 0;
    /// Time between handing sound over to the device and hearing it, as the device tells; 0 if it does not.
    virtual double outputLatency() const = 0;
    /// Gain 0 to 1. With a fade the gain moves there in a straight line, sample by sample, within that time.
    virtual void setVolume(float gain, double fadeDuration = 0) = 0;
    /// Called on any thread when the end was heard (true) or the decoder gave up (false). After the handler was
    /// replaced, and after the player's destruction, the former one is not called any more; an empty handler is
    /// allowed.
    virtual void setFinishHandler(std::function<void(bool successfully)> handler) = 0;
};

/// A sound output that can be chosen.
struct AudioDevice {
    QString id;   ///< stable between runs; empty for the system's default
    QString name; ///< for people
    bool operator==(const AudioDevice&) const = default;
};

/// What the sound output tells without being asked.
enum class AudioOutputEvent {
    Lost,          ///< the device went away while something played; playing was paused
    Silent,        ///< there is no device: a silent one with a real clock takes its place
    Sounding,      ///< after Silent: there is a device again
    DevicesChanged ///< devices() changed
};

/// Makes player objects and knows the outputs. Owned by the application; outlives its players.
class AudioSystem {
public:
    virtual ~AudioSystem() = default;

    /// Opens a file and primes its buffers and the output. Blocks, for as long as the disk takes. Errors:
    /// AudioFileError. Stop: looked at between the steps only, so a disk that hangs is not left; gives up with
    /// AudioFileError (CannotOpen). Thread: any, several at a time.
    /// \return the player, paused at the beginning; the caller owns it and destroys it before the AudioSystem.
    virtual std::unique_ptr<AudioFilePlayer> open(const QString& path, std::stop_token stop) = 0;

    /// The outputs as last looked at, without the default. Thread: main.
    virtual QList<AudioDevice> devices() const = 0;
    /// Looks again, in the background; DevicesChanged follows if something changed. Thread: main.
    virtual void refreshDevices() = 0;
    /// The device of what is played from now on; what plays moves there. \param id empty for the default; an unknown
    /// one counts as the default until it is there. Thread: main.
    virtual void setDevice(const QString& id) = 0;
    /// What setDevice() was last given, whether it is there or not. Thread: main.
    virtual QString device() const = 0;
    /// Called on any thread, which must not be held up. Replaces the former handler, which is not called any more
    /// when this returns; so the handler itself must not call this.
    virtual void setEventHandler(std::function<void(AudioOutputEvent)> handler) = 0;
};

/// The system's sound. Devices are looked for in the background: devices() is empty until DevicesChanged is told.
/// \param device the one that was chosen before; empty for the default
std::unique_ptr<AudioSystem> makeAudioSystem(const QString& device);
