#include <QApplication>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

extern std::unique_ptr<QCoreApplication> (*makeTestApplication)(int&, char**);

namespace {

std::unique_ptr<QCoreApplication> makeWidgetApplication(int& argc, char** argv)
{
    static const QTemporaryDir own; // nothing is put among the user's
    qputenv("XDG_CACHE_HOME", QFile::encodeName(own.path()));
    qputenv("XDG_DATA_HOME", QFile::encodeName(own.path()));
    return std::make_unique<QApplication>(argc, argv);
}

[[maybe_unused]] const bool kIsRegistered = (makeTestApplication = &makeWidgetApplication) != nullptr;

} // namespace
