#pragma once

#include <QList>
#include <QString>
#include <QStringList>

/// A file of translations as it stands in the sources.
struct TranslationFile {
    struct Message {
        QString key;
        QStringList forms; ///< one, or the counted forms
        bool isCounted = false;
        bool isFinished = true;  ///< neither marked as unfinished nor as unused
        bool isVanished = false; ///< kept for later although no source uses it; not built in
    };

    QString name;
    QList<Message> messages;

    /// Reads a file of resources/i18n; an error of the file fails the test.
    static TranslationFile read(const QString& name);
    const Message* find(const QString& key) const;
};
