#include "ui/sections/FavoriteActions.h"

#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionView.h"
#include "ui/text/Texts.h"

#include <QAbstractItemView>

FavoriteActions::FavoriteActions(const WindowContext& context, SectionView& page)
    : SectionParts(&page)
    , m_convert(page.header().addAction())
{
    connect(m_convert, &QAbstractButton::clicked, this, [&page, &actions = context.actions] {
        const QSet<TrackID> ids = page.selectedIDs();
        if (!ids.isEmpty())
            actions.addToConversion(ids);
    });
    const auto follow = [this, &page] { m_convert->setEnabled(page.list().selectionModel()->hasSelection()); };
    connect(page.list().selectionModel(), &QItemSelectionModel::selectionChanged, m_convert, follow);
    follow();
    retranslate();
}

void FavoriteActions::retranslate()
{
    m_convert->setContent(Texts::localized(QStringLiteral("В конвертер")));
}
