#pragma once

#include <QString>
#include <QStringList>

#include <optional>

/// A program that runs beside this one, for code on worker threads: it needs no event loop. It leads a process group of
/// its own, so that a wrapper script and what that starts are stopped together, and so that Ctrl-C in a terminal is
/// left to this program to pass on. On Linux the child is killed when the thread that started it ends, however this
/// program ends; so that thread stays as long as the object. Thread: any, one at a time.
class ChildProcess {
public:
    /// Stands for /dev/null.
    static constexpr int kNullDevice = -1;

    /// What to start and how.
    struct Launch {
        QString executable;    ///< path of the file; PATH is not searched
        QStringList arguments; ///< without the program's own name
        int niceness = 0;      ///< 0 to 19; below the starting thread's own value it has no effect
        // Open descriptors, which stay the caller's; the child gets no others.
        int standardInput = kNullDevice;
        int standardOutput = kNullDevice;
        int standardError = kNullDevice;
    };

    /// Starts the child; when this returns it runs the executable. Throws std::system_error with the system's code when
    /// that is impossible.
    explicit ChildProcess(const Launch& launch);
    /// Kills what still runs, and waits for its end at most a tenth of a second.
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// Whether the child has not ended. The first "no" takes it off the system's books and kills what is left of its
    /// group.
    bool isRunning();
    /// Asks the child and its group to end; nothing once isRunning() has said no.
    void terminate();
    /// Ends them without asking; nothing once isRunning() has said no.
    void kill();
    /// Once isRunning() has said no: the exit status, 0 to 255, or 128 and the number of the signal that ended it, as
    /// shells say it.
    std::optional<int> exitStatus() const { return m_exitStatus; }
    /// The system's number of the child; may belong to another process once isRunning() has said no.
    qint64 processID() const { return m_id; }

private:
    void signalGroup(int number);
    void reap();

    int m_id = 0;
    std::optional<int> m_exitStatus;
};
