#pragma once

#include <QList>
#include <QObject>
#include <QString>

#include <functional>
#include <memory>

/// All that the user did and can take back, in one line of time: edits, removals, moves to the Trash, renames,
/// choices. Whatever happened last is taken back first; a move to the Trash goes before edits that were made after
/// it. What is taken back can be done again where its step knows how, until something new is done. It keeps 200 steps
/// and 256 MiB at most; the oldest go. Owned by the store. Thread: main.
class History : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;
    using Question = std::function<bool()>;

    /// Which steps go before others: see the class.
    enum class Kind { Edit, Removal, Trash };
    /// What came of taking a step back.
    enum class Outcome {
        Done,
        Nothing,  ///< there was nothing left to take back: the step before it is tried
        UnderWay, ///< it goes on in the background until ended(); nothing else is taken back or done again meanwhile
    };
    /// What is known of an edit beside its actions.
    struct Facts {
        qint64 byteCount = 0;     ///< what it keeps in memory, about
        bool tellsItself = false; ///< its actions say what came of them: undone() and redone() are not told
    };

    /// One thing that the user did. It registers nothing itself when it is taken back or done again.
    class Step {
    public:
        explicit Step(Kind kind)
            : m_kind(kind)
        {
        }
        virtual ~Step() = default;
        Step(const Step&) = delete;
        Step& operator=(const Step&) = delete;

        Kind kind() const { return m_kind; }
        /// Localisation key of what the menu calls it.
        virtual QString name() const = 0;
        /// Whether nothing is left to take back. Asked often.
        virtual bool isSpent() const { return false; }
        /// Bytes that it keeps in memory, about.
        virtual qint64 byteCount() const { return 0; }
        /// Takes back what was done. A step that goes on in the background calls ended() once, even if nothing came
        /// of it; likewise for redo().
        virtual Outcome undo() = 0;
        /// Whether redo() does something; asked when the step was taken back.
        virtual bool canRedo() const { return false; }
        /// \return Done or UnderWay.
        virtual Outcome redo() { return Outcome::Done; }
        /// Whether it says itself that it was taken back or done again.
        virtual bool tellsItself() const { return m_kind != Kind::Edit; }
        /// Takes what a later step of the same moment does. \return whether it did.
        virtual bool absorb(Step& /*later*/) { return false; }

    private:
        Kind m_kind;
    };

    History();
    ~History() override;

    /// Adds what was just done, or has just begun.
    void push(std::shared_ptr<Step> step);
    /// The same by two actions; registrations of one name within one turn of the event loop are one step.
    /// \param actionName localisation key. \param isSpent whether nothing is left to take back; may be empty.
    void registerUndo(const QString& actionName, Action undo, Action redo, Question isSpent = {});
    /// The same of an edit of which more is known.
    void registerUndo(const QString& actionName, const Facts& facts, Action undo, Action redo, Question isSpent = {});
    /// A step came to nothing, or is taken back otherwise.
    void withdraw(const Step& step);
    /// The undo or redo of a step that was under way is over. One that is spent goes; else it is where it was before
    /// with what is left of it, or, by Done, where a step goes that was taken back or done again.
    void ended(const Step& step, Outcome outcome = Outcome::Nothing);

    /// False also while a step is being taken back or done again in the background.
    bool canUndo() const;
    /// False also while a step is being taken back or done again in the background.
    bool canRedo() const;
    /// Localised name of what undo() takes back; empty if there is nothing.
    QString undoActionName() const;
    /// Localised name of what redo() does again; empty if there is nothing.
    QString redoActionName() const;
    /// Whether something is being taken back: what was done before it has to wait.
    bool isBusy() const { return m_underWay != nullptr; }
    /// Takes back the next step; steps with nothing left to take back are passed over. Does nothing where canUndo()
    /// is false.
    void undo();
    /// Does again what was taken back last. Does nothing where canRedo() is false.
    void redo();
    /// Forgets all steps without taking them back.
    void clear();

Q_SIGNALS:
    /// What can be undone or redone changed.
    void changed();
    /// An edit was taken back; steps that tell themselves (Step::tellsItself()) are left out. \param actionName
    /// localised.
    void undone(const QString& actionName);
    /// The same of an edit that was done again.
    void redone(const QString& actionName);

private:
    using Steps = QList<std::shared_ptr<Step>>;

    qsizetype nextIndex() const;
    void trim();

    Steps m_done;   ///< the last one at the end
    Steps m_undone; ///< the one that is done again first at the end
    std::shared_ptr<Step> m_underWay;
    bool m_isRedoing = false;      ///< what is under way is a redo
    bool m_isSomethingNew = false; ///< something was done since it began
    quint64 m_turn = 0;            ///< rises once per turn of the event loop in which something was registered
    bool m_turnEnds = false;
};
