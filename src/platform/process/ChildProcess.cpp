#include "platform/process/ChildProcess.h"

#include "platform/process/Descriptor.h"

#include <QFile>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef Q_OS_LINUX
#include <linux/close_range.h>
#include <sys/prctl.h>
#endif

namespace {

/// How long the destructor waits for a killed child. Chosen: a kill takes effect within a few milliseconds unless the
/// child hangs in the kernel, as on a network file that does not answer.
constexpr std::chrono::milliseconds kPatience{100};
/// Status when the system no longer knows how the child ended; a failure in any case.
constexpr int kUnknownStatus = 255;

/// Everything the child needs, made before it exists: between its start and its program it may not allocate.
struct ChildPlan {
    const char* executable;
    char* const* arguments;
    std::array<int, 3> streams;
    int niceness;
    int report; ///< takes the error number when the program cannot be run
    pid_t parent;
};

[[noreturn]] void becomeProgram(const ChildPlan& plan)
{
    struct sigaction standard = {};
    standard.sa_handler = SIG_DFL;
    for (int number = 1; number < NSIG; ++number)
        sigaction(number, &standard, nullptr); // refused for KILL and STOP, which are as they should be
    setpgid(0, 0);
    setpriority(PRIO_PROCESS, 0, plan.niceness);
#ifdef Q_OS_LINUX
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    if (getppid() != plan.parent)
        _exit(kUnknownStatus); // the program ended before the line above
#endif
    bool isReady = true;
    for (int stream = 0; stream < 3; ++stream)
        isReady = isReady && dup2(plan.streams[std::size_t(stream)], stream) == stream;
#ifdef Q_OS_LINUX
    // Libraries open descriptors that would stay open in the child. Older systems refuse; what we open is safe anyway.
    close_range(3, ~0U, CLOSE_RANGE_CLOEXEC);
#endif
    sigset_t none;
    sigemptyset(&none);
    sigprocmask(SIG_SETMASK, &none, nullptr);
    if (isReady)
        execv(plan.executable, plan.arguments);
    const int error = errno;
    [[maybe_unused]] const ssize_t written = write(plan.report, &error, sizeof error);
    _exit(kUnknownStatus);
}

/// No handler of this program may run in the child while the two share their memory.
class AllSignalsBlocked {
public:
    AllSignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &m_before);
    }
    ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &m_before, nullptr); }
    AllSignalsBlocked(const AllSignalsBlocked&) = delete;
    AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;

private:
    sigset_t m_before;
};

/// A copy above the three standard streams, so that no dup2() in the child overwrites what the next one reads.
Descriptor streamFor(int descriptor)
{
    if (descriptor != ChildProcess::kNullDevice)
        return Descriptor::checked(fcntl(descriptor, F_DUPFD_CLOEXEC, 3));
    const Descriptor device = Descriptor::checked(open("/dev/null", O_RDWR | O_CLOEXEC));
    return Descriptor::checked(fcntl(device.get(), F_DUPFD_CLOEXEC, 3));
}

std::vector<char*> pointersInto(std::vector<QByteArray>& texts)
{
    std::vector<char*> pointers;
    for (QByteArray& text : texts)
        pointers.push_back(text.data());
    pointers.push_back(nullptr);
    return pointers;
}

pid_t startProgram(const ChildPlan& plan)
{
    const AllSignalsBlocked guard;
    // Not fork(): copying the page tables of a large program would stall its windows.
    const pid_t child = vfork();
    if (child == 0)
        becomeProgram(plan);
    if (child < 0)
        throw std::system_error(errno, std::generic_category());
    return child;
}

int waitFor(pid_t child, int options, int& status)
{
    int result;
    do
        result = waitpid(child, &status, options);
    while (result < 0 && errno == EINTR);
    return result;
}

/// Children that did not even end when killed; each start looks after them, so that none stays a zombie for long.
class Unburied {
public:
    void add(pid_t child)
    {
        const std::lock_guard lock(m_mutex);
        m_children.push_back(child);
    }
    void collect()
    {
        const std::lock_guard lock(m_mutex);
        std::erase_if(m_children, [](pid_t child) {
            int status = 0;
            return waitFor(child, WNOHANG, status) != 0;
        });
    }

private:
    std::mutex m_mutex;
    std::vector<pid_t> m_children;
};

Unburied& unburied()
{
    static Unburied children;
    return children;
}

} // namespace

ChildProcess::ChildProcess(const Launch& launch)
{
    unburied().collect();

    std::vector<QByteArray> texts{QFile::encodeName(launch.executable)};
    for (const QString& argument : launch.arguments)
        texts.push_back(QFile::encodeName(argument));
    const std::vector<char*> arguments = pointersInto(texts);
    const std::array streams{streamFor(launch.standardInput), streamFor(launch.standardOutput),
                             streamFor(launch.standardError)};
    int ends[2];
    if (pipe2(ends, O_CLOEXEC) != 0)
        throw std::system_error(errno, std::generic_category());
    const Descriptor reportOut(ends[0]);
    Descriptor reportIn(ends[1]);
    // A program that was started without its standard streams would get their numbers here, and the child lose its way
    // of reporting when it sets up its own.
    if (ends[1] <= STDERR_FILENO)
        reportIn = Descriptor(fcntl(ends[1], F_DUPFD_CLOEXEC, STDERR_FILENO + 1));

    const ChildPlan plan{.executable = arguments.front(),
                         .arguments = arguments.data(),
                         .streams = {streams[0].get(), streams[1].get(), streams[2].get()},
                         .niceness = launch.niceness,
                         .report = reportIn.get(),
                         .parent = getpid()};
    m_id = startProgram(plan);
    reportIn.close();

    int error = 0;
    ssize_t count;
    do
        count = read(reportOut.get(), &error, sizeof error);
    while (count < 0 && errno == EINTR);
    if (count == ssize_t(sizeof error)) {
        int status = 0;
        waitFor(m_id, 0, status); // it is on its way out
        throw std::system_error(error, std::generic_category());
    }
}

ChildProcess::~ChildProcess()
{
    if (!isRunning())
        return;
    kill();
    const auto deadline = std::chrono::steady_clock::now() + kPatience;
    while (isRunning()) {
        if (std::chrono::steady_clock::now() >= deadline) {
            unburied().add(m_id);
            return;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
}

bool ChildProcess::isRunning()
{
    if (m_exitStatus)
        return false;
    // Looks without taking: until the child is taken off the books its number belongs to no other process.
    siginfo_t ended = {};
    if (waitid(P_PID, id_t(m_id), &ended, WEXITED | WNOHANG | WNOWAIT) == 0 && ended.si_pid == 0)
        return true;
    reap();
    return false;
}

void ChildProcess::reap()
{
    signalGroup(SIGKILL);
    int status = 0;
    if (waitFor(m_id, 0, status) != m_id)
        m_exitStatus = kUnknownStatus;
    else
        m_exitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

void ChildProcess::terminate()
{
    signalGroup(SIGTERM);
}

void ChildProcess::kill()
{
    signalGroup(SIGKILL);
}

void ChildProcess::signalGroup(int number)
{
    if (!m_exitStatus)
        ::kill(-m_id, number);
}
