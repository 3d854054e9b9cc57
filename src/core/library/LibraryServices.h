#pragma once

#include "core/library/analysis/AudioAnalyser.h"
#include "core/library/reading/TagReader.h"
#include "core/library/removal/TrashCan.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/waveforms/Envelopes.h"
#include "platform/power/PowerWatch.h"

class EditJournal;
class Notifications;
class Preferences;
class TagFiles;

namespace async {
class Clock;
class Executor;
} // namespace async

/// What the store stands on, each behind a small interface; what is not named is a form that does nothing. All
/// outlive the store. A value of references: copying it copies no service.
struct LibraryServices {
    /// Needed always, as the four behind it: they have no form that does nothing.
    async::Clock& clock;
    async::Executor& executor;
    Preferences& preferences;
    Notifications& notifications;
    TagFiles& tagFiles;
    TagReader& tagReader = TagReader::none();
    AudioAnalyser& analyser = AudioAnalyser::none();
    Envelopes& envelopes = Envelopes::none();
    TrashCan& trashCan = TrashCan::none();
    WorkspaceSessionStorage& sessionStorage = WorkspaceSessionStorage::none();
    PowerWatch& power = PowerWatch::none();
    /// Where edits are kept until their files hold them; null where they are not. Outlives the executor.
    EditJournal* editJournal = nullptr;
};
