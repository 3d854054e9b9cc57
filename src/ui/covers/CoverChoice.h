#pragma once

#include "async/Executor.h"
#include "async/TaskSlot.h"
#include "ui/covers/ChosenPicture.h"

#include <QObject>

/// The picture that is chosen for covers, if there is one. It is read and decoded on a worker. Thread: main.
class CoverChoice : public QObject {
    Q_OBJECT

public:
    /// \param executor outlives the choice.
    explicit CoverChoice(async::Executor& executor, QObject* parent = nullptr);

    /// Takes another picture. The present one stays until the new one is decoded, and if that fails.
    void choose(const PictureSource& source);
    /// Nothing is chosen any more; a picture that is being prepared is forgotten.
    void clear();
    /// The one that is chosen and decoded; nothing where none is.
    const std::optional<ChosenPicture>& picture() const { return m_picture; }

Q_SIGNALS:
    /// Another picture is chosen, or none.
    void changed();
    /// What was to be chosen is no picture, cannot be read or is too large; the former choice stays.
    void refused();

private:
    async::Task<> prepare(PictureSource source, std::stop_token stop);

    async::Executor& m_executor;
    std::optional<ChosenPicture> m_picture;
    async::TaskSlot m_task; // last: stops the task before anything else goes
};
