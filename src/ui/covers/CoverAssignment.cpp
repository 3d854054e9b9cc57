#include "ui/covers/CoverAssignment.h"

#include "core/library/LibraryStore.h"
#include "core/library/status/StatusLine.h"
#include "platform/Notifications.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/covers/CoverChoiceCard.h"
#include "ui/covers/CoverGrid.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionView.h"
#include "ui/text/Texts.h"

#include <QAbstractItemView>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QPointer>

namespace {

/// Rows are selected as a whole, so that ranges are counted without a look at each row.
qsizetype selectedCount(const QAbstractItemView& list)
{
    qsizetype count = 0;
    for (const QItemSelectionRange& range : list.selectionModel()->selection())
        count += range.height();
    return count;
}

} // namespace

CoverAssignment::CoverAssignment(const WindowContext& context, SectionView& section)
    : SectionParts(&section)
    , m_context(context)
    , m_section(section)
    , m_choice(context.executor)
    , m_card(new CoverChoiceCard(context, &section))
    , m_chooseButton(section.header().addAction())
    , m_applyButton(&section.header().mainButton())
{
    connect(m_chooseButton, &QAbstractButton::clicked, this, &CoverAssignment::choose);
    connect(m_applyButton, &QAbstractButton::clicked, this, &CoverAssignment::apply);
    connect(m_card, &CoverChoiceCard::applyWanted, this, &CoverAssignment::apply);
    connect(m_card, &CoverChoiceCard::removeWanted, this, [this] {
        m_choice.clear();
        m_section.focusList();
    });
    connect(&m_choice, &CoverChoice::changed, this, [this] {
        m_card->setPicture(m_choice.picture());
        refresh();
    });
    connect(&m_choice, &CoverChoice::refused, this,
            [this] { warn(QStringLiteral("Не удалось подготовить выбранное изображение для обложки.")); });
    connect(section.list().selectionModel(), &QItemSelectionModel::selectionChanged, this, &CoverAssignment::refresh);
    connect(section.list().model(), &QAbstractItemModel::modelReset, this, &CoverAssignment::refresh);
    connect(section.list().model(), &QAbstractItemModel::rowsRemoved, this, &CoverAssignment::refresh);
    Notifications& notifications = context.store.notifications();
    connect(&notifications, &Notifications::velmoraChooseCoverArtwork, this, &CoverAssignment::choose);
    connect(&notifications, &Notifications::velmoraApplyCoverArtwork, this, &CoverAssignment::apply);
    retranslate();
}

QWidget* CoverAssignment::banner() const
{
    return m_card;
}

QAbstractItemView* CoverAssignment::makeGrid(const WindowContext& context, SectionView& page)
{
    auto* grid = new CoverGrid(context, page.model(), &page);
    connect(grid, &CoverGrid::contextMenuWanted, &page, &SectionView::contextMenuWanted);
    connect(grid, &CoverGrid::playWanted, &page, &SectionView::play);
    return grid;
}

QString CoverAssignment::facts(LibraryStore&, const QList<Track>& rows)
{
    if (rows.isEmpty())
        return {};
    const qint64 missing =
        std::count_if(rows.begin(), rows.end(), [](const Track& t) { return t.artworkData().isNull(); });
    return Texts::facts(
        {Texts::trackCount(rows.size()),
         missing > 0 ? VelmoraLocalization::format(QStringLiteral("без обложки %d"), {missing}) : QString()});
}

void CoverAssignment::choose()
{
    m_context.actions.chooseArtwork([self = QPointer(this)](const QByteArray& image) {
        if (self)
            self->m_choice.choose(image);
    });
}

void CoverAssignment::take(const QMimeData& data)
{
    if (const std::optional<PictureSource> source = PictureSources::pictureOf(data))
        m_choice.choose(*source);
}

void CoverAssignment::paste()
{
    const QMimeData* data = QGuiApplication::clipboard()->mimeData();
    if (data && PictureSources::hasPicture(*data))
        take(*data);
    else
        warn(QStringLiteral("В буфере обмена нет изображения"));
}

void CoverAssignment::apply()
{
    if (!m_choice.picture()) {
        warn(QStringLiteral("Сначала выберите изображение"));
        return;
    }
    const QSet<TrackID> ids = m_section.selectedIDs();
    if (ids.isEmpty())
        warn(QStringLiteral("Выберите треки"));
    else
        m_context.actions.assignArtwork(m_choice.picture()->bytes, ids);
}

void CoverAssignment::retranslate()
{
    m_chooseButton->setContent(Texts::localized(QStringLiteral("Выбрать изображение…")));
    m_applyButton->setContent(Texts::localized(QStringLiteral("Присвоить выбранным")));
    m_card->retranslate();
    refresh();
}

void CoverAssignment::refresh()
{
    const qsizetype count = selectedCount(m_section.list());
    const bool hasPicture = m_choice.picture().has_value();
    m_applyButton->setEnabled(hasPicture && count > 0);
    const QString missing =
        hasPicture ? QStringLiteral("Выберите треки") : QStringLiteral("Сначала выберите изображение");
    m_applyButton->setToolTip(m_applyButton->isEnabled() ? QString() : Texts::localized(missing));
    m_card->setTargetCount(count);
}

void CoverAssignment::warn(const QString& message)
{
    m_context.store.status().showStatus(message, StatusIcon::Warning, WorkspaceStatus::Tone::Warning);
}
