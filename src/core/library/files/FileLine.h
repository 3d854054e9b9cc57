#pragma once

#include "async/TaskGroup.h"
#include "core/library/files/FileLocks.h"
#include "work/WorkBoard.h"

#include <QList>
#include <QObject>
#include <QString>
#include <QUrl>

#include <memory>
#include <optional>

/// What went wrong with a file. A value.
struct FileFailure {
    QUrl url;
    QString message;        ///< localised
    bool isMissing = false; ///< the file is not there any more
};

/// What is to be done with some files, one after the other. Made by the concern that wants it and used for one way
/// through a FileLine; the calls come in the order in which they stand here. Thread: main.
class FileRound {
public:
    /// How it ended.
    struct End {
        std::optional<FileFailure> firstFailure; ///< one of a file that is there before one of a missing file
        int failed = 0;
        int left = 0; ///< files that a stop left undone
    };

    virtual ~FileRound() = default;

    /// Its turn has come. \return its files, in the order in which they are gone through.
    virtual QList<QUrl> begin() = 0;
    /// Does what is to be done with one file. \param held its path, given back at the end unless a copy is kept.
    /// \return what went wrong. What it throws beside Cancelled counts as a failure without a reason.
    virtual async::Task<std::optional<FileFailure>> work(qsizetype file, FileLocks::HeldPath held,
                                                         std::stop_token stop) = 0;
    /// After every few files and after the last one: rows catch up with the files.
    virtual void update() {}
    /// All files are done, or a stop left the others. Not called when the line goes before the end.
    virtual void end(const End& end) = 0;
};

/// Goes through files in the background, one after the other: holds each file's path while something is done with it,
/// notes the first failure, has rows brought up to date every few files, tells how far it is, and stops on request
/// after the file in hand. Thread: main.
class FileLine : public QObject {
    Q_OBJECT

public:
    /// Files done and to be done by the rounds under way; none at other times.
    struct Progress {
        int done = 0;
        int total = 0;
    };

    /// How the user sees it, and stops it, where it goes through more than one file: single ones are done before anyone
    /// could read of them.
    struct Shown {
        WorkBoard& board;
        int rank;     ///< of WorkKinds::Awaited
        QString text; ///< with a place for what is done and one for all; not translated
    };

    /// What it refers to outlives it. \param roundsAtOnce how many rounds go on beside each other; more wait in order.
    FileLine(FileLocks& locks, const Shown& shown, int roundsAtOnce = 1);
    ~FileLine() override;

    /// Adds a round behind those that wait; it begins at once if fewer than roundsAtOnce are under way. The line
    /// keeps it until its end.
    void append(std::shared_ptr<FileRound> round);
    /// Ends the rounds under way after the file in hand, at once those that wait for a path; those that wait begin
    /// nevertheless.
    void stop();
    Progress progress() const { return m_progress; }
    /// Whether a round is under way; one that only waits does not count.
    bool isActive() const { return !m_running.isEmpty(); }
    /// Shows a single file too, as long as it waits for the user.
    void setShownAlways(bool isShownAlways);
    /// Another text from now on.
    void setText(const QString& text) { m_text = text; }

Q_SIGNALS:
    /// After every file, and when a round begins or ends.
    void progressChanged();
    /// stop() was asked for, by whomever: what the work in hand waits for may be given up.
    void stopWanted();

private:
    struct Running;

    async::Task<> run(std::shared_ptr<FileRound> round, std::stop_token stop);
    async::Task<FileRound::End> goThrough(std::shared_ptr<Running> running, std::stop_token stop);
    async::Task<FileLocks::HeldPath> hold(QUrl url, std::shared_ptr<Running> running, std::stop_token stop);
    static async::Task<std::optional<FileFailure>> work(std::shared_ptr<Running> running, qsizetype file,
                                                        FileLocks::HeldPath held, std::stop_token stop);
    void setProgress(int done, int total);

    FileLocks& m_locks;
    QString m_text;
    WorkEntry m_entry;
    bool m_isShownAlways = false;
    Progress m_progress;
    QList<std::shared_ptr<Running>> m_running;
    async::TaskGroup m_rounds;
};
