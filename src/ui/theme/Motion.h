#pragma once

#include <QString>

/// Whether things may move by themselves.
namespace Motion {

/// Whether the user asked the desktop for no animations, as the settings of GTK and KDE in a folder say.
bool isReduced(const QString& configFolder);
/// The same for the user's configuration, looked up once. Thread: main.
bool isReduced();

} // namespace Motion
