#pragma once

#include "core/model/AudioTags.h"
#include "core/model/TagField.h"
#include "core/model/Track.h"

#include <QHash>
#include <QSet>

class History;
class MetadataLoads;
class Notifications;
class StatusLine;
class Workspace;

/// Lets edits go that did not come to their files, because of a failure or a stop: the rows show what the files hold
/// again. Else a file that can never be written would be asked about at every end of the program. Thread: main.
class GivenUpEdits {
public:
    struct Dependencies {
        Workspace& workspace;
        StatusLine& status;
        Notifications& notifications;
        History& history;
        MetadataLoads& loads;
    };

    explicit GivenUpEdits(const Dependencies& dependencies);

    /// Gives up what was edited in these rows of the main list and is not in their files, as one step of undo. Rows are
    /// read again at once; one whose file cannot be read shows what its name suggests. No file is written, by undo
    /// neither: that brings the edits back as they were, still to be written.
    void giveUp(const QSet<TrackID>& ids);

private:
    struct Edit {
        AudioTags tags;
        TagFields fields;
    };
    using Edits = QHash<TrackID, Edit>;

    Edits editsOf(const QSet<TrackID>& ids) const;
    void letGo(const Edits& edits);
    void bringBack(const Edits& edits);

    Dependencies m_dependencies;
};
