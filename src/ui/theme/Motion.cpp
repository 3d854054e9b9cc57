#include "ui/theme/Motion.h"

#include <QSettings>
#include <QStandardPaths>

// The toolkit has no question for this.
bool Motion::isReduced(const QString& configFolder)
{
    const QSettings kde(configFolder + QStringLiteral("/kdeglobals"), QSettings::IniFormat);
    bool isNumber = false;
    const double factor = kde.value(QStringLiteral("KDE/AnimationDurationFactor")).toDouble(&isNumber);
    if (isNumber && factor <= 0)
        return true;
    for (const QString& version : {QStringLiteral("gtk-4.0"), QStringLiteral("gtk-3.0")}) {
        const QSettings gtk(configFolder + u'/' + version + QStringLiteral("/settings.ini"), QSettings::IniFormat);
        const QVariant value = gtk.value(QStringLiteral("Settings/gtk-enable-animations"));
        if (value.isValid())
            return !value.toBool();
    }
    return false;
}

bool Motion::isReduced()
{
    static const bool kIsReduced = isReduced(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation));
    return kIsReduced;
}
