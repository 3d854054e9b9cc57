#pragma once

#include "ui/context/WindowContext.h"
#include "ui/sections/SectionParts.h"

class SectionView;
class ThemeButton;

/// The action that Favorites has in its header: sending the selection to the converter.
class FavoriteActions : public SectionParts {
    Q_OBJECT

public:
    FavoriteActions(const WindowContext& context, SectionView& page);
    void retranslate() override;

private:
    ThemeButton* m_convert;
};
