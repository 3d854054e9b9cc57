#include "ui/theme/KeyColours.h"

#include <array>

namespace {

// From mint over green, yellow, orange, rose and violet to blue.
constexpr std::array<QRgb, 12> kWheel{0xFF7FE3C4, 0xFF8FE88F, 0xFFB6EA7C, 0xFFE6E07A, 0xFFF6C27A, 0xFFF79C8A,
                                      0xFFF58FB4, 0xFFE59AF0, 0xFFBFA0F7, 0xFF9DB4FB, 0xFF86CDF5, 0xFF7BE0E6};

} // namespace

QColor KeyColours::colour(const MusicalKey& key)
{
    return QColor(kWheel.at(static_cast<size_t>(key.camelotNumber() - 1)));
}

QColor KeyColours::chipText()
{
    return QColor(0x14161A);
}
