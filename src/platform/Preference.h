#pragma once

#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <cmath>
#include <functional>
#include <memory>
#include <type_traits>

/// Where preference values live. A value that was set is what value() gives from then on. Thread: main.
class PreferenceStore {
public:
    virtual ~PreferenceStore() = default;

    virtual bool contains(const QString& key) const = 0;
    /// An invalid variant if the key has no value.
    virtual QVariant value(const QString& key) const = 0;
    /// Keys that have a value, in alphabetical order.
    virtual QStringList keys() const = 0;
    /// Replaces the value of a key, and tells onChange.
    void set(const QString& key, const QVariant& value);
    /// Afterwards the key has no value, whether it had one or not.
    void remove(const QString& key);

    /// Called after every set and remove, with the key.
    std::function<void(const QString&)> onChange;
    /// Called after every try to bring values to the disk, with whether it took them.
    std::function<void(bool isSaved)> onSaved;

protected:
    /// Keeps a value; set() tells of it.
    virtual void write(const QString& key, const QVariant& value) = 0;
    /// Forgets a value; remove() tells of it.
    virtual void erase(const QString& key) = 0;
};

/// One value of the preferences under one key. An unset or unreadable value yields the default.
template <typename T>
class Preference {
public:
    /// \param store outlives the preference. \param key as it stands in the file: on disk, never change.
    Preference(PreferenceStore& store, QString key, T defaultValue)
        : m_store(&store)
        , m_key(std::move(key))
        , m_default(std::move(defaultValue))
    {
    }

    /// As it stands in the file.
    const QString& key() const { return m_key; }
    const T& defaultValue() const { return m_default; }
    /// Whether the store has a value, be it readable or not.
    bool isSet() const { return m_store->contains(m_key); }

    /// The default too for a number that is none or not finite, and for a text that is no truth value.
    T get() const
    {
        QVariant value = m_store->value(m_key);
        if (!isReadable(value) || !value.convert(QMetaType::fromType<T>()))
            return m_default;
        const T result = value.value<T>();
        if constexpr (std::is_floating_point_v<T>)
            return std::isfinite(result) ? result : m_default;
        else
            return result;
    }
    /// Written at once, also where the value is the same or the default.
    void set(const T& value) { m_store->set(m_key, QVariant::fromValue(value)); }
    /// Goes back to the default.
    void remove() { m_store->remove(m_key); }

private:
    // Files hold texts, and the conversion would take every text for true that is not "false", "0" or empty.
    static bool isReadable(const QVariant& value)
    {
        if (!std::is_same_v<T, bool> || value.typeId() != QMetaType::QString)
            return value.isValid();
        const QString text = value.toString();
        return text == QLatin1StringView("true") || text == QLatin1StringView("false") ||
               text == QLatin1StringView("1") || text == QLatin1StringView("0");
    }

    PreferenceStore* m_store;
    QString m_key;
    T m_default;
};

/// The preferences of the user, in an INI file of the configuration folder. The file is read once, and written by a
/// thread of its own, each time as a whole new file that takes the old one's place: the window never waits for the
/// disk.
class SettingsFile final : public PreferenceStore {
public:
    /// Reads the file; what cannot be read counts as unset. What the disk refuses is tried again with the next
    /// change.
    /// \param path full path of the file; created with the first value
    explicit SettingsFile(const QString& path);
    /// Waits until everything that was set is on disk, or until the disk has refused it.
    ~SettingsFile() override;
    bool contains(const QString& key) const override;
    QVariant value(const QString& key) const override;
    QStringList keys() const override;

protected:
    void write(const QString& key, const QVariant& value) override;
    void erase(const QString& key) override;

private:
    class Writer;

    QMap<QString, QVariant> m_values;
    std::shared_ptr<SettingsFile*> m_self; ///< what the writer tells; gone with this
    std::unique_ptr<Writer> m_writer;
};

/// Preferences that last as long as the object.
class MemoryPreferenceStore final : public PreferenceStore {
public:
    bool contains(const QString& key) const override { return m_values.contains(key); }
    QVariant value(const QString& key) const override { return m_values.value(key); }
    QStringList keys() const override { return m_values.keys(); }

protected:
    void write(const QString& key, const QVariant& value) override { m_values.insert(key, value); }
    void erase(const QString& key) override { m_values.remove(key); }

private:
    QMap<QString, QVariant> m_values;
};
