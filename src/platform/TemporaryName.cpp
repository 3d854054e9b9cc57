#include "platform/TemporaryName.h"

#include <algorithm>

namespace TemporaryName {

namespace {

bool isHexDigit(char c)
{
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

} // namespace

bool matches(QByteArrayView fileName)
{
    constexpr QByteArrayView kPrefix = ".velmora-";
    constexpr QByteArrayView kShape = "xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx.";
    if (!fileName.startsWith(kPrefix) || fileName.size() <= kPrefix.size() + kShape.size())
        return false;
    return std::ranges::equal(kShape, fileName.sliced(kPrefix.size(), kShape.size()),
                              [](char shape, char c) { return shape == 'x' ? isHexDigit(c) : shape == c; });
}

} // namespace TemporaryName
