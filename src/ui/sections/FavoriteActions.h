#pragma once

#include "core/model/Track.h"
#include "ui/context/WindowContext.h"
#include "ui/sections/SectionParts.h"

class SectionView;
class ThemeButton;

/// What Favorites has in its header: the filter that is on with a link that clears it, and sending the selection to the
/// converter.
class FavoriteActions : public SectionParts {
    Q_OBJECT

public:
    /// \param page the section of favourites, whose list exists already
    FavoriteActions(const WindowContext& context, SectionView& page);
    void retranslate() override;

    /// Tracks, their length, and what filter they passed.
    static QString facts(LibraryStore& library, const QList<Track>& rows);
    /// What the filter hides, in a sentence; empty without favourites.
    static QString hiddenBy(LibraryStore& library);

private:
    void refreshFilter();

    WindowContext m_context;
    ThemeButton* m_convert;
    ThemeButton* m_clear; ///< shown while a filter is on
};
