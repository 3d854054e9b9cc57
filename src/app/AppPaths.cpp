#include "app/AppPaths.h"

#include <QDir>
#include <QStandardPaths>

namespace AppPaths {

namespace {

QString configFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
}

} // namespace

QString preferencesFile()
{
    return configFolder() + QStringLiteral("/Velmora/settings.ini");
}

QString legacyPreferencesFile()
{
    return configFolder() + QStringLiteral("/com.nimbrel.app.ini");
}

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + QStringLiteral("/Velmora");
}

QString waveformFolder()
{
    const QString caches = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
    return (caches.isEmpty() ? QDir::tempPath() : caches) + QStringLiteral("/Velmora/Waveforms");
}

QString tagVaultFolder()
{
    return dataFolder() + QStringLiteral("/TagVault");
}

} // namespace AppPaths
