#include "ui/inspector/InventoryLoads.h"

InventoryLoads::InventoryLoads(async::Executor& executor, Read read, QObject* parent)
    : QObject(parent)
    , m_executor(executor)
    , m_read(std::move(read))
    , m_known(kKept)
{
}

InventoryLoads::~InventoryLoads() = default;

std::optional<TagInventory> InventoryLoads::of(const Track& track)
{
    const Track::MetadataVersion& version = track.metadataVersion();
    const QString key = version.tags.toString() + version.artwork.toString() + track.url().toString(QUrl::FullyEncoded);
    if (const TagInventory* known = m_known.object(key))
        return *known;
    if (m_read && !(m_loading == key && m_task.isActive())) {
        m_loading = key;
        m_task.start([this, key, url = track.url()](std::stop_token stop) { return load(key, url, std::move(stop)); });
    }
    return std::nullopt;
}

void InventoryLoads::forget()
{
    cancel(); // its answer may be from before the write
    m_known.clear();
}

void InventoryLoads::cancel()
{
    m_task.cancel();
    m_loading.clear();
}

async::Task<> InventoryLoads::load(QString key, QUrl url, std::stop_token stop)
{
    auto look = [read = m_read, url](const std::stop_token&) { return read(url); };
    const TagInventory inventory = co_await m_executor.run(async::Priority::UserInitiated, stop, std::move(look));
    m_known.insert(key, new TagInventory(inventory));
    m_loading.clear();
    emit arrived();
}
