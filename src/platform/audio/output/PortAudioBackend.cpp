#include "platform/audio/output/PortAudioBackend.h"

#include "platform/audio/output/PortAudioStream.h"
#include "platform/audio/output/QuietBackends.h"

#include <QStringList>

namespace {

/// ALSA lists every name of its configuration; these are for people, the rest are building blocks of theirs.
bool isForPeople(const PaDeviceInfo& device, const QString& name)
{
    static const QStringList kServers{QStringLiteral("pulse"), QStringLiteral("pipewire"), QStringLiteral("jack")};
    const PaHostApiInfo* const host = Pa_GetHostApiInfo(device.hostApi);
    if (!host || host->type != paALSA)
        return true;
    return name.contains(QLatin1StringView("(hw:")) || kServers.contains(name);
}

QString idOf(const PaDeviceInfo& device)
{
    const PaHostApiInfo* const host = Pa_GetHostApiInfo(device.hostApi);
    return QString::fromUtf8(host ? host->name : "") + u'/' + QString::fromUtf8(device.name);
}

} // namespace

PortAudioBackend::PortAudioBackend()
{
    initialize();
}

PortAudioBackend::~PortAudioBackend()
{
    terminate();
}

void PortAudioBackend::initialize()
{
    QuietBackends::silence();
    m_isInitialized = Pa_Initialize() == paNoError;
}

void PortAudioBackend::terminate()
{
    if (m_isInitialized)
        Pa_Terminate();
    m_isInitialized = false;
}

void PortAudioBackend::rescan()
{
    terminate();
    initialize();
}

QList<AudioDevice> PortAudioBackend::devices() const
{
    QList<AudioDevice> devices;
    const int count = m_isInitialized ? Pa_GetDeviceCount() : 0;
    for (int index = 0; index < count; ++index) {
        const PaDeviceInfo* const info = Pa_GetDeviceInfo(index);
        if (!info || info->maxOutputChannels < 2)
            continue;
        const QString name = QString::fromUtf8(info->name);
        if (isForPeople(*info, name))
            devices.append({idOf(*info), name});
    }
    return devices;
}

std::optional<int> PortAudioBackend::indexOf(const QString& deviceID) const
{
    const int count = m_isInitialized ? Pa_GetDeviceCount() : 0;
    for (int index = 0; index < count && !deviceID.isEmpty(); ++index) {
        const PaDeviceInfo* const info = Pa_GetDeviceInfo(index);
        if (info && info->maxOutputChannels >= 2 && idOf(*info) == deviceID)
            return index;
    }
    const PaDeviceIndex standard = m_isInitialized ? Pa_GetDefaultOutputDevice() : paNoDevice;
    return standard == paNoDevice ? std::nullopt : std::optional(standard);
}

std::unique_ptr<OutputStream> PortAudioBackend::open(const Wish& wish, SoundSource& source)
{
    const std::optional<int> device = indexOf(wish.deviceID);
    if (!device)
        return nullptr;
    if (auto stream = PortAudioStream::open(*device, wish.sampleRate, wish.latency, source))
        return stream;
    const PaDeviceInfo* const info = Pa_GetDeviceInfo(*device);
    return info ? PortAudioStream::open(*device, info->defaultSampleRate, wish.latency, source) : nullptr;
}
