#pragma once

#include "async/Completion.h"
#include "core/model/TagInventory.h"

#include <QObject>

#include <memory>
#include <optional>

class Preferences;
class Workspace;

/// Whether saves keep what a file's tags hold besides the ten fields: what the user prefers, and the question that is
/// asked once, before the first save that would take something away. Thread: main.
class KeepQuestion : public QObject {
    Q_OBJECT

public:
    /// \param workspace says that the question is asked. Both outlive this. Setting the preference answers as well.
    KeepQuestion(Workspace& workspace, Preferences& preferences);
    ~KeepQuestion() override;

    /// Whether a save that would take something away has to ask: the user neither wants others kept nor was asked
    /// before.
    bool isOpen() const;
    /// Whether a save may keep something, now or after the question.
    bool mayKeep() const;
    /// What the user prefers; asks and waits for the answer where the save would be the first to take something away.
    /// \param replacesPicture whether the save writes a picture of its own.
    /// \return nothing where the question was withdrawn: nobody has answered it.
    async::Task<std::optional<bool>> keepsOthers(TagInventory inventory, AudioTags written, bool replacesPicture,
                                                 std::stop_token stop);
    /// The user's answer; saves that waited for it go on.
    void answer(bool keepsOthers);
    /// The user wants no more of the saves that wait for the answer. The next one that would drop something asks again.
    void withdraw();

private:
    void preferenceChanged(const QString& key);

    Workspace& m_workspace;
    Preferences& m_preferences;
    std::unique_ptr<async::Completion<std::optional<bool>>> m_answer; ///< to the question that is being asked
};
