#include "RawSamples.h"

#include <QFile>
#include <QtEndian>

#include <cerrno>
#include <system_error>

std::vector<float> rawSamples(const QString& path)
{
    QFile file(path);
    errno = 0;
    const bool isOpen = file.open(QIODevice::ReadOnly);
    const QByteArray bytes = isOpen ? file.readAll() : QByteArray();
    if (file.error() != QFileDevice::NoError)
        throw std::system_error(errno != 0 ? errno : EIO, std::generic_category());
    std::vector<float> samples(std::size_t(bytes.size()) / sizeof(float));
    qFromLittleEndian<float>(bytes.constData(), qsizetype(samples.size()), samples.data());
    return samples;
}
