#include "app/AppPaths.h"
#include "app/VelmoraApp.h"
#include "core/library/artwork/ArtworkImage.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "platform/audio/AudioFilePlayer.h"

#include <QApplication>
#include <QDir>

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("Velmora"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VELMORA_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("velmora"));

    ArtworkImage::allowLargePictures();

    auto preferences = std::make_unique<Preferences>(std::make_unique<SettingsFile>(AppPaths::preferencesFile()));
    auto audio = makeAudioSystem(preferences->audioOutputDevice.get());
    VelmoraApp velmora(std::move(preferences), std::move(audio));
    QList<QUrl> files;
    const QStringList arguments = QCoreApplication::arguments().sliced(1);
    for (const QString& argument : arguments)
        files.append(FileURL::fromPath(QDir::current().absoluteFilePath(argument)));
    velmora.open(files);
    return QApplication::exec();
}
