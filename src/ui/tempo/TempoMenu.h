#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"

#include <QSet>

class QMenu;

/// The commands for the tempo of rows.
namespace TempoMenu {

/// Puts them into \p menu: other tempos of the one row where an analysis found some, or where they come from, double,
/// half, write into the tag, analyse again. \param ids rows of the main list.
void fill(QMenu& menu, const WindowContext& context, const QSet<TrackID>& ids);

} // namespace TempoMenu
