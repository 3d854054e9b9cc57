#pragma once

#include <QHash>
#include <QReadWriteLock>
#include <QString>
#include <QTranslator>

/// The texts of one language, from the translation files that are built into the program: first the wording for systems
/// other than macOS, where this is one, then the language's own file. Thread: any.
class TranslationTable {
public:
    /// \param language "ru" or "en". Missing files are a fault of the build and are reported with qCritical.
    explicit TranslationTable(const QString& language);

    /// The translation of a key, or the key. The first question for a key searches the files, later ones a table.
    QString text(const QString& key) const;
    /// The counted form of a key with "%n", which is left in place; the key where there is none.
    QString pluralText(const QString& key, qint64 count) const;

private:
    QString look(const QString& key, int count) const;

    QTranslator m_system;
    QTranslator m_language;
    mutable QReadWriteLock m_lock;
    mutable QHash<QString, QString> m_texts; ///< what was asked for already; guarded by m_lock
};
