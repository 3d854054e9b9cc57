#pragma once

class QMenu;
struct WindowContext;

/// The settings of the window, as a menu.
namespace SettingsMenu {

/// Fills the menu with the present values. What the context refers to outlives the menu, whose parent is the window.
void build(QMenu& menu, const WindowContext& context);

/// Row scales of the lists: the ordinary one and the dense one.
inline constexpr double kOrdinaryDensity = 1.0;
inline constexpr double kDenseDensity = 0.8;

} // namespace SettingsMenu
