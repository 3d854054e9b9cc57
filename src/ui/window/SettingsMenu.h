#pragma once

class Preferences;
class QMenu;

/// The settings of the window, as a menu.
namespace SettingsMenu {

void build(QMenu& menu, Preferences& preferences);

/// Row scales of the lists: the ordinary one and the dense one.
inline constexpr double kOrdinaryDensity = 1.0;
inline constexpr double kDenseDensity = 0.8;

} // namespace SettingsMenu
