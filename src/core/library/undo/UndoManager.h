#pragma once

#include <QObject>
#include <QUndoStack>

#include <functional>

/// Undo of edits, grouped by action name: registrations of one name within one turn of the event loop are one step.
/// A small front of QUndoStack. Thread: main.
class UndoManager : public QObject {
    Q_OBJECT

public:
    using Action = std::function<void()>;

    explicit UndoManager(QObject* parent = nullptr);

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
    QUndoStack m_stack;
    quint64 m_turn = 0; ///< rises once per turn of the event loop in which something was registered
    bool m_turnEnds = false;
};
