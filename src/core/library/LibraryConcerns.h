#pragma once

#include "core/library/LibraryServices.h"
#include "core/library/artwork/Artwork.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/files/FileEvents.h"
#include "core/library/files/FileLocks.h"
#include "core/library/imports/Imports.h"
#include "core/library/imports/StrayTemporaries.h"
#include "core/library/keys/Keys.h"
#include "core/library/order/Order.h"
#include "core/library/playback/Playback.h"
#include "core/library/quicklists/QuickLists.h"
#include "core/library/reading/MetadataLoads.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/sending/Sending.h"
#include "core/library/session/Session.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/ClosingQuestion.h"
#include "core/library/tagwriting/GivenUpEdits.h"
#include "core/library/tagwriting/OriginalTags.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/tempo/Tempo.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/undo/History.h"
#include "core/library/waveforms/Waveforms.h"
#include "core/library/workspace/Workspace.h"
#include "work/Scheduler.h"
#include "work/WorkBoard.h"

/// The workspace and the concerns of one store, in the order in which they are built. Each calls only those above it,
/// which it gets by reference, and learns of those below by their signals; so there is no ring among them.
struct LibraryConcerns {
    /// Builds all of them, in this order, and connects their signals (LibraryStoreWiring.cpp). \param services
    /// copied: the references, not what they lead to.
    explicit LibraryConcerns(const LibraryServices& services);
    ~LibraryConcerns();

    /// What the others stand on; knows none of them.
    LibraryServices services;
    Workspace workspace;
    /// What is told and shared: these call nothing but the services and the workspace.
    FileEvents fileEvents;
    FileLocks fileLocks;
    Scheduler scheduler;
    WorkBoard board;
    StatusLine status;
    History history;
    QuickLists quickLists;
    /// Rows: their order and selection, and what plays and shows them.
    TempoResults tempoResults;
    Order order;
    Selection selection;
    Playback playback;
    Waveforms waveforms;
    Favorites favorites;
    /// Tags and pictures on their way into files.
    TagSaver tagSaver;
    TagWriting tagWriting;
    OriginalTags originalTags;
    UnwrittenEdits unwrittenEdits;
    ClosingQuestion closingQuestion;
    Artwork artwork;
    /// What files tell: reads, then tempos, which go by the tags that were read.
    MetadataLoads loads;
    GivenUpEdits givenUpEdits;
    Tempo tempo;
    TempoChoices tempoChoices;
    Sending sending;
    /// Rows that go and come.
    Removal removal;
    StrayTemporaries strayTemporaries;
    Imports imports;
    Keys keys;
    /// Last, for it gathers from all others what outlives the program.
    Session session;

private:
    void wireHistory();
    void wirePreferences();
    void wireRemoval();
    void wireStoppedWrites();
    void wireClosing();
    void wireOrder();
    void wirePower();

    TagSaver::Dependencies tagSaverDependencies();
    Tempo::Dependencies tempoDependencies();
    Removal::Dependencies removalDependencies();
    Imports::Dependencies importsDependencies();
    Keys::Dependencies keysDependencies();
    Session::Dependencies sessionDependencies();
};
