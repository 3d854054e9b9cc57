#pragma once

#include <QString>

/// Where the program keeps its own files. Folders are not created here.
namespace AppPaths {

/// The preferences of the program: "settings.ini" in the folder "Velmora" of the user's configuration.
QString preferencesFile();
/// The preferences that the program had under its former name.
QString legacyPreferencesFile();
/// What the program keeps of its own besides: "Velmora" in the user's data folder, the session first of all.
QString dataFolder();
/// Where waveforms are kept: "Velmora/Waveforms" in the user's cache folder, or in the temporary one without such.
QString waveformFolder();
/// Where the tags are kept that files had before the program first changed them: "Velmora/TagVault" in the user's data
/// folder.
QString tagVaultFolder();

} // namespace AppPaths
