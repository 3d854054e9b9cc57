#pragma once

#include "ui/commands/Command.h"

#include <QObject>

#include <array>
#include <functional>

class LibraryStore;

/// Whether a command can be given now, and if not, why.
struct CommandState {
    bool isEnabled = true;
    QString reason = {}; ///< Russian, for a tooltip; empty where it speaks for itself
};

/// Ties the table of commands to what they do. Menus, buttons and keys all pass through here, so that they do the same,
/// and on the same rows. Owned by the dashboard, lives as long as what is bound. Thread: main.
class CommandCenter : public QObject {
    Q_OBJECT

public:
    /// What a command does. The rows are reduced already.
    using Perform = std::function<void(const CommandTarget&)>;
    /// Asked whenever a menu or a button is shown; cheap.
    using State = std::function<CommandState(const CommandTarget&)>;

    /// Nothing is bound yet. \param library outlives it.
    explicit CommandCenter(const LibraryStore& library);

    /// Says what a command does, in place of what it did before. \param state when it can be given, beside what its
    /// entry says; may be empty.
    void bind(CommandID id, Perform perform, State state = {});
    /// Whether it can be given now. A command cannot that is not bound, that the section does not have, or that is
    /// for rows and has none; in the converter the rows are left to what is bound.
    CommandState state(CommandID id, const CommandTarget& target = {}) const;
    /// Does it on the reduced rows, where it can be given. \return whether it could.
    bool perform(CommandID id, const CommandTarget& target = {});
    /// What of a target is acted on: rows that the section does not show never are, whatever put them into a selection.
    QSet<TrackID> rows(const CommandTarget& target) const;

Q_SIGNALS:
    /// A command is carried out now, on these rows; told before it is.
    void performing(CommandID id, const CommandTarget& target);

private:
    struct Binding {
        Perform perform;
        State state;
    };
    CommandState stateOfReduced(CommandID id, const CommandTarget& target) const;
    CommandTarget reduced(const CommandTarget& target) const;
    const LibrarySection& section() const;

    const LibraryStore& m_library;
    std::array<Binding, kCommandCount> m_bindings;

    /// What was reduced last: a menu asks for each of its entries, and a selection may hold everything.
    struct Reduced {
        QSet<TrackID> ids;
        QSet<TrackID> rows;
        LibraryTab tab;
        quint64 listRevision = 0;
    };
    mutable std::optional<Reduced> m_reduced;
};
