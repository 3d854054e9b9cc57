#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"
#include "ui/context/WindowContext.h"

#include <QSet>

class QMenu;

/// The commands for rows of a section. \param ids the rows; the menu may outlive their selection. \param focused the
/// row among them that would be played.
namespace TrackMenu {

void build(QMenu& menu, const WindowContext& context, LibraryTab tab, const QSet<TrackID>& ids,
           const std::optional<Track>& focused);

} // namespace TrackMenu
