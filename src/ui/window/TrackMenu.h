#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"

#include <QSet>

#include <optional>

class QMenu;
struct SectionDescriptor;

/// The context menu of rows. Thread: main.
namespace TrackMenu {

/// \param ids the selected rows of the section shown. \param focused the one that the play command is for.
void build(QMenu& menu, const WindowContext& context, const SectionDescriptor& section, const QSet<TrackID>& ids,
           const std::optional<Track>& focused);

} // namespace TrackMenu
