#pragma once

#include "tags/writing/WriteErrors.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <functional>

/// A folder whose files writers change.
class WriterFolder {
public:
    /// \return the path of the new file.
    QString write(const QString& name, const QByteArray& bytes) const;
    QByteArray read(const QString& name) const;
    QString path(const QString& name) const { return m_folder.filePath(name); }
    /// The names of all files, hidden ones too, sorted.
    QStringList names() const;
    /// Removes new files that took nobody's place. \return how many there were.
    int removeTemporaries() const;

private:
    QTemporaryDir m_folder;
};

/// The name of the case of the error that a call throws, e.g. "fileNoSuchFile"; empty if it throws none.
QString errorOf(const std::function<void()>& call);

using Change = std::function<void(const QString& path)>;

/// Lets a change of a file fail at each of its steps, and end before each of them. The file must hold the old bytes
/// after a failure, the old or the new ones after an end, and a failure must leave nothing else in the folder. \param
/// keepsTemporary whether a failure leaves the new file.
void expectWholeAtEveryStep(const QString& name, const QByteArray& original, const Change& change,
                            bool keepsTemporary = false);
