#pragma once

#include "core/model/LibraryTab.h"
#include "core/model/Track.h"
#include "ui/WindowContext.h"
#include "ui/sections/SectionBody.h"
#include "ui/tracks/TrackListModel.h"

#include <QTimer>
#include <QWidget>

#include <optional>

class CoverAssignment;
class DropTarget;
class EmptyState;
class KeySection;
class QAbstractItemView;
class QStackedLayout;
class ScrollActivity;
class SectionHeader;
class ScrollMemory;
class SelectionSync;
class SortControls;

/// The page of one section: header, list or grid, or the empty state. Follows the workspace only while it is shown; a
/// hidden page remembers that it is behind. Thread: main.
class SectionView : public QWidget {
    Q_OBJECT

public:
    SectionView(const WindowContext& context, LibraryTab tab, QWidget* parent = nullptr);
    ~SectionView() override;

    LibraryTab tab() const { return m_tab; }
    TrackListModel& model() const { return *m_model; }
    QAbstractItemView& list() const { return *m_list; }
    SectionHeader& header() const { return *m_header; }
    /// Choosing and assigning pictures; null but in Covers.
    CoverAssignment* coverAssignment() const { return m_covers; }

    /// The states of keys and the wheel; null but in the key section.
    KeySection* keySection() const { return m_keys; }

    /// Whether this is the page that the user sees.
    void setShown(bool shown);
    /// Something that the page shows has changed.
    void markDirty();
    void retranslate();
    void setDensity(double density);

    /// The selected rows. Hands a waiting change of the selection on first.
    QSet<TrackID> selectedIDs();
    /// The focused row where it is selected, else the first selected one.
    std::optional<Track> focusedTrack();
    /// Brings a row into the middle of the view; nothing for a row that is not here.
    void scrollTo(const TrackID& id);
    void selectAll();
    void focusList();
    /// Shows a panel at the right of the list for as long as that is not hidden.
    void setPanel(QWidget* panel, SectionBody::Narrow narrow = SectionBody::Narrow::Over);
    /// What the line under the title says may be another thing now.
    void factsChanged();

Q_SIGNALS:
    void contextMenuWanted(const QPoint& globalPosition);
    void filesDropped(const QList<QUrl>& urls);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void buildList();
    void followKeys();
    void buildActions();
    void addDropTarget(QWidget& area);
    void play(const Track& track);
    void moveFocus(int offset);
    void refresh();
    void updateFacts();
    void showOutline(bool isOn);

    WindowContext m_context;
    LibraryTab m_tab;
    TrackListModel* m_model;
    SectionHeader* m_header;
    QAbstractItemView* m_list = nullptr;
    EmptyState* m_empty;
    SectionBody* m_body;
    QStackedLayout* m_stack;
    QWidget* m_outline;
    SelectionSync* m_sync = nullptr; ///< null where the section keeps a selection of its own
    ScrollActivity* m_scrolling = nullptr;
    CoverAssignment* m_covers = nullptr;
    KeySection* m_keys = nullptr;
    ScrollMemory* m_scrollMemory = nullptr;
    SortControls* m_sorting = nullptr; ///< null where nothing can be sorted
    std::function<void()> m_retranslateActions;
    QTimer m_factsTimer;
    bool m_isShown = false;
    bool m_isDirty = true;
};
