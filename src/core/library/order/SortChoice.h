#pragma once

#include "core/library/order/FolderSorts.h"
#include "platform/Preference.h"

/// Field and direction that the user chose for one section, kept in two preferences. A raw value that means nothing
/// stands for the default. Thread: main.
class SortChoice {
public:
    /// The preferences outlive the choice.
    SortChoice(Preference<QString>& field, Preference<QString>& direction);

    /// The present choice; the same object all the time.
    const FolderSorts::Key& key() const { return m_key; }
    /// Takes a new choice over and writes what differs.
    /// \return whether anything did.
    bool set(const FolderSorts::Key& key);
    /// Follows a write that did not come from here. \param preferenceKey any; others than the two are ignored.
    /// \return whether the choice differs now
    bool preferenceChanged(const QString& preferenceKey);

private:
    FolderSorts::Key read() const;

    Preference<QString>& m_field;
    Preference<QString>& m_direction;
    FolderSorts::Key m_key;
};
