#include "platform/files/TrashName.h"

namespace TrashName {

namespace {

constexpr QByteArrayView kInfoSuffix = ".trashinfo";
constexpr qsizetype kLongestName = 255 - kInfoSuffix.size(); // bytes; NAME_MAX of Linux file systems
constexpr qsizetype kLongestExtension = 16;                  // chosen: what follows a later point is part of a title

/// Where the extension with its point begins; the end of the name if it has none.
qsizetype extensionBegin(const QByteArray& name)
{
    const qsizetype point = name.lastIndexOf('.');
    const qsizetype size = name.size() - point;
    const bool isExtension = point > 0 && size > 1 && size <= kLongestExtension && name.indexOf(' ', point) < 0;
    return isExtension ? point : name.size();
}

/// Not inside a UTF-8 sequence.
QByteArray shortened(const QByteArray& text, qsizetype size)
{
    if (text.size() <= size)
        return text;
    constexpr int kMostContinuations = 3;
    const auto isContinuation = [&](qsizetype at) { return (static_cast<unsigned char>(text.at(at)) & 0xC0) == 0x80; };
    qsizetype end = size;
    while (end > size - kMostContinuations && isContinuation(end))
        --end;
    return text.first(isContinuation(end) ? size : end); // what is no UTF-8 has no sequences to keep whole
}

} // namespace

QByteArray numbered(const QByteArray& name, int number)
{
    const qsizetype begin = extensionBegin(name);
    QByteArray tail = name.sliced(begin);
    if (number > 1)
        tail.prepend(' ' + QByteArray::number(number));
    return shortened(name.first(begin), kLongestName - tail.size()) + tail;
}

QByteArray infoName(const QByteArray& keptName)
{
    QByteArray name = keptName;
    return name.append(kInfoSuffix);
}

QByteArray infoText(const QByteArray& path, const QDateTime& deleted)
{
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") +
           "\nDeletionDate=" + deleted.toString(QStringLiteral("yyyy-MM-ddThh:mm:ss")).toLatin1() + '\n';
}

} // namespace TrashName
