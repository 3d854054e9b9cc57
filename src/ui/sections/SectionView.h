#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"
#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"
#include "ui/sections/SectionBody.h"
#include "ui/tracks/TrackListModel.h"

#include <QWidget>

#include <optional>

class DropTarget;
class EmptyState;
class QAbstractItemView;
class QStackedLayout;
class ScrollActivity;
class SectionHeader;
class SectionParts;
class ScrollMemory;
class SelectionSync;
class SortControls;
struct SectionDescriptor;

/// The page of one section: header, list or grid, or the empty state. Follows the workspace only while it is shown; a
/// hidden page remembers that it is behind. Thread: main.
class SectionView : public QWidget {
    Q_OBJECT

public:
    /// \param descriptor outlives the page.
    SectionView(const WindowContext& context, const SectionDescriptor& descriptor, QWidget* parent = nullptr);
    ~SectionView() override;

    const SectionDescriptor& descriptor() const { return m_descriptor; }
    /// Which section it is.
    LibraryTab tab() const;
    TrackListModel& model() const { return *m_model; }
    /// The table or the grid; owned by the page.
    QAbstractItemView& list() const { return *m_list; }
    /// Title, facts and actions; owned by the page.
    SectionHeader& header() const { return *m_header; }
    /// What the section has beyond header and list; null where it has no more.
    SectionParts* parts() const { return m_parts; }

    /// Whether this is the page that the user sees. A page that comes into view catches up with what it missed and
    /// takes the workspace's selection over.
    void setShown(bool shown);
    /// Something that the page shows has changed: it takes its rows anew, now or when it is next shown.
    void markDirty();
    /// Takes the language of the interface over.
    void retranslate();
    /// Scale of the row height; the grid of covers has none.
    void setDensity(double density);

    /// Plays a row, or toggles it when it is the current one.
    void play(const Track& track);
    /// The selected rows. Hands a waiting change of the selection on first.
    QSet<TrackID> selectedIDs();
    /// The focused row where it is selected, else the first selected one.
    std::optional<Track> focusedTrack();
    /// Brings a row into the middle of the view; nothing for a row that is not here.
    void scrollTo(const TrackID& id);
    /// All rows that the list shows.
    void selectAll();
    /// The keyboard goes to the list, or to what stands in its place.
    void focusList();
    /// Shows a panel at the right of the list for as long as that is not hidden.
    void setPanel(QWidget* panel, SectionBody::Narrow narrow = SectionBody::Narrow::Over);
    /// What the line under the title says may be another thing now.
    void factsChanged();

Q_SIGNALS:
    /// On rows that are selected already.
    void contextMenuWanted(const QPoint& globalPosition);
    /// On the list, the empty state or the card above it.
    void filesDropped(const QList<QUrl>& urls);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void buildList();
    void layOut();
    QAbstractItemView* makeTable();
    void addDropTarget(QWidget& area);
    void moveFocus(int offset);
    void refresh();
    void takeStatusTexts();
    void updateFacts();
    void showOutline(bool isOn);

    WindowContext m_context;
    const SectionDescriptor& m_descriptor;
    TrackListModel* m_model;
    SectionHeader* m_header;
    QAbstractItemView* m_list = nullptr;
    EmptyState* m_empty;
    SectionBody* m_body;
    QStackedLayout* m_stack;
    QWidget* m_outline;
    SelectionSync* m_sync = nullptr; ///< null where the section keeps a selection of its own
    ScrollActivity* m_scrolling = nullptr;
    SectionParts* m_parts = nullptr;
    ScrollMemory* m_scrollMemory = nullptr;
    SortControls* m_sorting = nullptr; ///< null where nothing can be sorted
    bool m_isShown = false;
    bool m_isDirty = true;
    Delay m_facts;
};
