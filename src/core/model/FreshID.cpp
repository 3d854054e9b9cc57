#include "core/model/FreshID.h"

#include <QRandomGenerator>

QUuid freshID()
{
    thread_local QRandomGenerator64 generator = QRandomGenerator64::securelySeeded();
    const quint64 high = generator.generate();
    const quint64 low = generator.generate();
    return QUuid(uint(high >> 32), ushort(high >> 16), ushort((high & 0x0fff) | 0x4000),
                 uchar(((low >> 56) & 0x3f) | 0x80), uchar(low >> 48), uchar(low >> 40), uchar(low >> 32),
                 uchar(low >> 24), uchar(low >> 16), uchar(low >> 8), uchar(low));
}
