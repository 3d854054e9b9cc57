#pragma once

#include <QObject>
#include <QUndoStack>

#include <functional>

/// Undo of edits, grouped by action name: registrations of one name within one turn of the event loop are one step.
/// Steps of another history can stand in one line with them. A small front of QUndoStack. Thread: main.
class UndoManager : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;

    /// Steps of another kind, kept elsewhere, that are taken back in one line with these and not done again.
    struct OtherHistory {
        std::function<quint64()> lastMoment; ///< of its last step, see nextUndoMoment(); 0 if there is none
        std::function<QString()> actionName; ///< localised, of that step
        Action undo;                         ///< takes that step back
        std::function<bool()> isBusy;        ///< whether a step is being taken back; nothing else is until it is over
    };

    explicit UndoManager(QObject* parent = nullptr);

    /// Whatever happened last is undone first from now on, here or there. The owner of the other history calls
    /// otherHistoryChanged() and outlives this.
    void joinHistory(OtherHistory other) { m_other = std::move(other); }
    void otherHistoryChanged() { emit changed(); }

    /// Registers what was just done. \param actionName localisation key of what the menu calls it. \param undo takes it
    /// back. \param redo does it again; neither registers anything itself.
    void registerUndo(const QString& actionName, Action undo, Action redo);

    bool canUndo() const;
    bool canRedo() const;
    /// Localised name of what undo() takes back; empty if there is nothing.
    QString undoActionName() const;
    QString redoActionName() const;
    void undo();
    void redo();
    void clear();

Q_SIGNALS:
    /// What can be undone or redone changed.
    void changed();

private:
    bool isOthersTurn() const;
    bool isBusy() const { return m_other.isBusy && m_other.isBusy(); }

    QUndoStack m_stack;
    OtherHistory m_other;
    quint64 m_turn = 0; ///< rises once per turn of the event loop in which something was registered
    bool m_turnEnds = false;
};
