#include "app/AppPaths.h"

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

} // namespace AppPaths
