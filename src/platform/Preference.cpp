#include "platform/Preference.h"

#include "async/MainQueue.h"
#include "async/ThreadNiceness.h"

#include <QSettings>

#include <condition_variable>
#include <mutex>
#include <optional>
#include <thread>

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

/// Brings changes to the disk in their order, several at once when they come faster than the disk takes them.
class SettingsFile::Writer {
public:
    /// \param told is called on the main thread after every write, with whether it went well.
    Writer(const QString& path, std::function<void(bool isSaved)> told)
        : m_path(path)
        , m_told(std::move(told))
    {
    }
    ~Writer()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_isEnding = true;
        }
        m_wake.notify_one();
        if (m_thread.joinable())
            m_thread.join();
    }
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;

    /// \param value nothing takes the key out.
    void add(const QString& key, const std::optional<QVariant>& value)
    {
        {
            const std::lock_guard lock(m_mutex);
            m_changes.insert(key, value);
        }
        if (m_thread.joinable())
            m_wake.notify_one();
        else
            m_thread = std::thread([this] { work(); });
    }

private:
    using Changes = QMap<QString, std::optional<QVariant>>;
    static constexpr int kNiceness = 5; // that of work that the user will want soon

    void work()
    {
        async::setThreadNiceness(kNiceness);
        std::unique_lock lock(m_mutex);
        while (true) {
            m_wake.wait(lock, [this] { return m_isEnding || !m_changes.isEmpty(); });
            if (m_changes.isEmpty())
                return;
            m_refused.insert(std::exchange(m_changes, {}));
            const Changes changes = m_refused;
            lock.unlock();
            const bool isSaved = write(changes);
            lock.lock();
            if (isSaved)
                m_refused.clear();
            async::MainQueue::post([told = m_told, isSaved] { told(isSaved); });
        }
    }

    bool write(const Changes& changes) const
    {
        QSettings file(m_path, QSettings::IniFormat);
        for (auto change = changes.cbegin(); change != changes.cend(); ++change) {
            if (change.value())
                file.setValue(change.key(), *change.value());
            else
                file.remove(change.key());
        }
        file.sync();
        return file.status() == QSettings::NoError;
    }

    const QString m_path;
    const std::function<void(bool)> m_told;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    Changes m_changes;
    Changes m_refused; ///< by the disk: they come again with the next change
    bool m_isEnding = false;
    std::thread m_thread;
};

SettingsFile::SettingsFile(const QString& path)
    : m_self(std::make_shared<SettingsFile*>(this))
    , m_writer(std::make_unique<Writer>(path, [self = std::weak_ptr(m_self)](bool isSaved) {
        if (const auto file = self.lock(); file && (*file)->onSaved)
            (*file)->onSaved(isSaved);
    }))
{
    const QSettings file(path, QSettings::IniFormat);
    for (const QString& key : file.allKeys())
        m_values.insert(key, file.value(key));
}

SettingsFile::~SettingsFile() = default;

bool SettingsFile::contains(const QString& key) const
{
    return m_values.contains(key);
}

QVariant SettingsFile::value(const QString& key) const
{
    return m_values.value(key);
}

QStringList SettingsFile::keys() const
{
    return m_values.keys();
}

void SettingsFile::write(const QString& key, const QVariant& value)
{
    m_values.insert(key, value);
    m_writer->add(key, value);
}

void SettingsFile::erase(const QString& key)
{
    m_values.remove(key);
    m_writer->add(key, std::nullopt);
}
