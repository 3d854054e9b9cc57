#include "app/AppPaths.h"
#include "app/SingleInstance.h"
#include "app/VelmoraApp.h"
#include "core/library/artwork/ArtworkImage.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Preferences.h"
#include "platform/audio/AudioFilePlayer.h"

#include <QApplication>
#include <QDir>

#include <cstdio>
#include <cstdlib>

namespace {

/// In the language that the user chose; its preferences are read and left alone.
void sayThatTheFirstIsSilent()
{
    const Preferences preferences(std::make_unique<SettingsFile>(AppPaths::preferencesFile()));
    VelmoraLocalization::setLanguage(appLanguageFromRawValue(preferences.appLanguage.get()));
    const QString text = VelmoraLocalization::string(QStringLiteral("Velmora уже запущена, но не отвечает"));
    std::fprintf(stderr, "%s\n", qUtf8Printable(text));
}

} // namespace

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("velmora"));

    ArtworkImage::allowLargePictures();
    QList<QUrl> files;
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    for (const QString& argument : arguments)
        files.append(FileURL::fromPath(QDir::current().absoluteFilePath(argument)));

    SingleInstance instance(AppPaths::dataFolder());
    switch (instance.begin(files)) {
    case SingleInstance::Role::HandedOver:
        return EXIT_SUCCESS;
    case SingleInstance::Role::Unanswered:
        sayThatTheFirstIsSilent();
        return EXIT_FAILURE;
    case SingleInstance::Role::First:
        break;
    }
    auto preferences = std::make_unique<Preferences>(std::make_unique<SettingsFile>(AppPaths::preferencesFile()));
    auto audio = makeAudioSystem(preferences->audioOutputDevice.get());
    VelmoraApp velmora(std::move(preferences), std::move(audio),
                       std::make_unique<WorkspaceSessionStorage>(AppPaths::dataFolder()));
    QObject::connect(&instance, &SingleInstance::filesReceived, &velmora, &VelmoraApp::openAgain);
    velmora.open(files);
    return QApplication::exec();
}
