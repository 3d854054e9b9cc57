#include "async/MainQueue.h"
#include "async/TaskSlot.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <gtest/gtest.h>

namespace {

/// A warning is a failure, and no test leaves a task behind.
class Strictness : public testing::EmptyTestEventListener {
    void OnTestEnd(const testing::TestInfo&) override
    {
        async::MainQueue::drain();
        EXPECT_EQ(async::liveTaskCount(), 0) << "tasks were still alive at the end of the test";
    }
};

void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message)
{
    fprintf(stderr, "%s\n", qPrintable(message));
    // The offscreen platform says this of every window with a minimum size, and where a window is raised or a menu
    // opens.
    const bool isPlatformNoise = message.contains(QLatin1StringView("propagateSizeHints")) ||
                                 message == QLatin1StringView("This plugin does not support raise()") ||
                                 message.startsWith(QLatin1StringView("This plugin does not support grabbing"));
    if (!isPlatformNoise && (type == QtWarningMsg || type == QtCriticalMsg))
        ADD_FAILURE() << "message: " << qPrintable(message);
}

} // namespace

// Programs with widgets define their own application object before the tests run.
std::unique_ptr<QCoreApplication> (*makeTestApplication)(int&, char**) = nullptr;

int main(int argc, char** argv)
{
    qputenv("LC_ALL", "C.UTF-8");    // names of files and texts of the system are the same everywhere
    qputenv("VELMORA_TESTING", "1"); // the user's own workspace is left alone
    testing::InitGoogleTest(&argc, argv);
    std::unique_ptr<QCoreApplication> application =
        makeTestApplication ? makeTestApplication(argc, argv) : std::make_unique<QGuiApplication>(argc, argv);
    testing::UnitTest::GetInstance()->listeners().Append(new Strictness);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
