#pragma once

#include <QString>

#include <array>
#include <optional>

/// The seven sections of the workspace, in the order of the sidebar.
enum class LibraryTab { Playlist, Favorites, Covers, Converter, Analysis, MusicalKey, Duplicates };

/// All sections in the order of LibraryTab.
inline constexpr std::array kAllLibraryTabs{LibraryTab::Playlist,  LibraryTab::Favorites, LibraryTab::Covers,
                                            LibraryTab::Converter, LibraryTab::Analysis,  LibraryTab::MusicalKey,
                                            LibraryTab::Duplicates};

/// The Russian label of a section: localisation key and key of the stored per-section dictionaries. On disk, never
/// change.
QString rawValue(LibraryTab tab);
/// The section with this raw value, letter by letter; nothing for an unknown one.
std::optional<LibraryTab> libraryTabFromRawValue(const QString& raw);
