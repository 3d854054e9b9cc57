#pragma once

#include <QString>

class PreferenceStore;
class Preferences;

/// Takes the settings over that the program stored under its former name, once.
namespace DefaultsMigration {

/// The key under the present name: "Nimbrel" becomes "Velmora", in any of the three spellings of letters. Other keys
/// stay.
QString migratedKey(const QString& key);
/// Copies every value of \p legacy that has no value yet, then marks the migration as done. Does nothing if it is
/// marked; a legacy store that holds nothing leaves it unmarked, so that the next start tries again.
void migrateLegacyDefaults(const PreferenceStore& legacy, Preferences& preferences);

} // namespace DefaultsMigration
