#pragma once

#include "core/library/files/FileEvents.h"
#include "platform/FileURL.h"

#include <QHash>
#include <QString>

/// What was found out about the sound of files, by standardized path. It holds while the file is the one that was
/// heard, and goes along with what the program itself does to the file. A Value knows the file's stamp: stamp() and
/// setStamp(). Thread: main.
template <typename Value>
class FileResults {
public:
    using Table = QHash<QString, Value>;

    FileResults() = default;
    explicit FileResults(Table table)
        : m_table(std::move(table))
    {
    }

    /// All results by standardized path; what outlives the program.
    const Table& table() const { return m_table; }
    /// What is kept for a path, whether or not the file still is the same; null if there is nothing. Valid until the
    /// next change.
    const Value* find(const QString& path) const
    {
        const auto entry = m_table.constFind(path);
        return entry == m_table.cend() ? nullptr : &*entry;
    }
    /// Keeps a result in place of another one. \param path standardized.
    void set(const QString& path, const Value& value) { m_table.insert(path, value); }
    void remove(const QString& path) { m_table.remove(path); }

    /// Lets the result of a file hold on after a change that left its sound alone, at the place where the file is now.
    /// A file in the Trash leaves its result behind, for it may come back. \return whether anything is kept otherwise.
    bool follow(const FileChange& change)
    {
        if (!change.isSoundSame || !change.before || !change.after)
            return false;
        const QString former = FileURL::standardizedPath(change.former.isEmpty() ? change.url : change.former);
        const auto entry = m_table.constFind(former);
        if (entry == m_table.cend() || !change.before->isSameFile(entry->stamp()))
            return false;
        Value value = *entry;
        value.setStamp(*change.after);
        const QString path = FileURL::standardizedPath(change.url);
        if (path != former)
            m_table.remove(former);
        m_table.insert(path, value);
        return true;
    }

private:
    Table m_table;
};
