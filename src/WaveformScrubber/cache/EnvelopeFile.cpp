#include "WaveformScrubber/cache/EnvelopeFile.h"

#include "WaveformScrubber/shape/Envelope.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QtEndian>

namespace EnvelopeFile {

namespace {

constexpr qint64 kDay = 24 * 60 * 60; // seconds; a date would change at midnight

constexpr qint64 kByteCount = kEnvelopeSampleCount * qint64(sizeof(float));

void markAsUsed(QFile& file)
{
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (file.fileTime(QFileDevice::FileModificationTime).secsTo(now) >= kDay)
        file.setFileTime(now, QFileDevice::FileModificationTime);
}

} // namespace

std::optional<std::vector<float>> read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered) || file.size() != kByteCount)
        return std::nullopt;
    std::vector<float> samples(kEnvelopeSampleCount);
    if (file.read(reinterpret_cast<char*>(samples.data()), kByteCount) != kByteCount)
        return std::nullopt;
    qFromLittleEndian<float>(samples.data(), qsizetype(samples.size()), samples.data());
    markAsUsed(file);
    return samples;
}

bool write(const QString& path, std::span<const float> samples)
{
    if (qint64(samples.size_bytes()) != kByteCount)
        return false;
    std::vector<float> bytes(samples.size());
    qToLittleEndian<float>(samples.data(), qsizetype(samples.size()), bytes.data());
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    // Unbuffered, because a buffer takes a disk that is full half-way for success.
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(reinterpret_cast<const char*>(bytes.data()), kByteCount) == kByteCount && file.commit();
}

} // namespace EnvelopeFile
