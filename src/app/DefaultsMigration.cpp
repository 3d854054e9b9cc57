#include "app/DefaultsMigration.h"

#include "platform/Preferences.h"

namespace DefaultsMigration {

QString migratedKey(const QString& key)
{
    QString result = key;
    result.replace(QStringLiteral("Nimbrel"), QStringLiteral("Velmora"));
    result.replace(QStringLiteral("nimbrel"), QStringLiteral("velmora"));
    result.replace(QStringLiteral("NIMBREL"), QStringLiteral("VELMORA"));
    return result;
}

void migrateLegacyDefaults(const PreferenceStore& legacy, Preferences& preferences)
{
    if (preferences.defaultsMigrated.get())
        return;
    const QStringList keys = legacy.keys();
    if (keys.isEmpty())
        return;
    PreferenceStore& store = preferences.store();
    for (const QString& key : keys) {
        if (const QString target = migratedKey(key); !store.contains(target))
            store.set(target, legacy.value(key));
    }
    preferences.defaultsMigrated.set(true);
}

} // namespace DefaultsMigration
