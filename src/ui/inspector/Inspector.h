#pragma once

#include "async/TaskSlot.h"
#include "ui/context/Delay.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/Panel.h"
#include "ui/drops/PictureSource.h"
#include "ui/inspector/InspectorModel.h"
#include "ui/inspector/InventoryLoads.h"

class CoverWell;
class InspectorFields;
class PinnedStrip;
class QScrollArea;
class SaveBar;
class WrappedText;

/// The panel that shows and edits the tags and the cover of the selected tracks. Follows the selection while it is
/// shown, except while there are unsaved edits. Thread: main.
class Inspector : public Panel {
    Q_OBJECT

public:
    /// Pixels; the panel has no other width.
    static constexpr int kWidth = 340;
    /// Chosen: up to here a look at all tracks takes about a millisecond and is had at once.
    static constexpr int kManyTracks = 2000;

    struct Services {
        async::Executor& executor;
        /// Looks through one audio file; called on worker threads. May be null.
        InventoryLoads::Read readInventory;
    };

    /// Shown or not as the preference says, which it follows.
    Inspector(const WindowContext& context, const Services& services, QWidget* parent = nullptr);
    ~Inspector() override;

    /// Takes the language of the interface over; edits stay.
    void retranslate();
    /// Writes the touched fields into the tracks shown; without any it writes again what a failed or stopped save
    /// left out of their files.
    void save();
    /// Whether the window may go. Unsaved edits hold it back once, with a word in the status line.
    bool mayClose();
    /// Takes all unsaved edits back; without any, those that did not come to their files.
    void revertAll();

    /// What it shows, and its pieces; owned by the panel.
    const InspectorModel& model() const { return m_model; }
    InspectorFields& fields() const { return *m_fields; }
    CoverWell& well() const { return *m_well; }
    SaveBar& saveBar() const { return *m_saveBar; }
    PinnedStrip& pinnedStrip() const { return *m_strip; }

Q_SIGNALS:
    /// The user is done with a field: the keys go back to the list.
    void leaveWanted();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void build();
    QWidget* buildContent();
    void orderTabs();
    void applyColours();
    void connectWorkspace();
    void selectionMoved();
    void refresh();
    void showModel();
    void showSubject();
    void fitHeight();
    void showCover();
    void chooseCover();
    void takeCover(const PictureSource& offer);
    void refuseCover();
    async::Task<> assign(PictureSource offer, QSet<TrackID> ids, std::stop_token stop);

    WindowContext m_context;
    async::Executor& m_executor;
    InspectorModel m_model;
    InventoryLoads m_inventories;
    PinnedStrip* m_strip;
    QScrollArea* m_scroll;
    QWidget* m_empty;
    CoverWell* m_well;
    WrappedText* m_name;
    WrappedText* m_facts;
    InspectorFields* m_fields;
    SaveBar* m_saveBar;
    bool m_hasWarned = false; ///< of the edits that there are
    Delay m_delay;            ///< of the look at very many tracks
    async::TaskSlot m_cover;  // last: stops the task before anything else goes
};
