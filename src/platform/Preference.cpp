#include "platform/Preference.h"

#include <QSettings>

void PreferenceStore::set(const QString& key, const QVariant& value)
{
    write(key, value);
    if (onChange)
        onChange(key);
}

void PreferenceStore::remove(const QString& key)
{
    erase(key);
    if (onChange)
        onChange(key);
}

SettingsFile::SettingsFile(const QString& path)
    : m_settings(std::make_unique<QSettings>(path, QSettings::IniFormat))
{
}

SettingsFile::~SettingsFile() = default;

bool SettingsFile::contains(const QString& key) const
{
    return m_settings->contains(key);
}

QVariant SettingsFile::value(const QString& key) const
{
    return m_settings->value(key);
}

QStringList SettingsFile::keys() const
{
    return m_settings->allKeys();
}

void SettingsFile::write(const QString& key, const QVariant& value)
{
    m_settings->setValue(key, value);
    flush();
}

void SettingsFile::erase(const QString& key)
{
    m_settings->remove(key);
    flush();
}

void SettingsFile::flush()
{
    m_settings->sync();
    if (m_settings->status() != QSettings::NoError)
        qWarning("the preferences cannot be written to %s", qPrintable(m_settings->fileName()));
}
