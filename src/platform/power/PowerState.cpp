#include "platform/power/PowerState.h"

#include <QDir>
#include <QFile>

#include <algorithm>
#include <optional>

// Names and meanings: the kernel's documents on its interfaces, testing/sysfs-class-power, testing/sysfs-class-thermal
// and testing/sysfs-platform_profile.

namespace PowerState {

namespace {

constexpr qsizetype kMostEntries = 64; // of a folder; a big server has about as many thermal zones
constexpr int kMostTripPoints = 16;    // of a zone; the kernel's own limit is 12 on most machines
constexpr qint64 kMostBytes = 64;      // of a file; all are one word or one number
constexpr int kLowCapacity = 20;       // percent
constexpr int kHeatMargin = 5000;      // thousandths of a degree Celsius

QByteArray read(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    return file.read(kMostBytes).trimmed();
}

std::optional<int> number(const QString& path)
{
    bool isNumber = false;
    const int value = read(path).toInt(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

/// Paths of the folder's entries, which are links on a real machine.
QStringList entries(const QString& folder, const QString& pattern)
{
    const QDir dir(folder);
    QStringList paths;
    for (const QString& name : dir.entryList({pattern}, QDir::Dirs | QDir::NoDotAndDotDot).mid(0, kMostEntries))
        paths.append(dir.filePath(name));
    return paths;
}

bool isLowBattery(const QString& supply)
{
    const bool isOfMachine = read(supply + QStringLiteral("/type")) == "Battery" &&
                             read(supply + QStringLiteral("/scope")) != "Device"; // a mouse has one of its own
    if (!isOfMachine || read(supply + QStringLiteral("/status")) != "Discharging")
        return false;
    const std::optional<int> capacity = number(supply + QStringLiteral("/capacity"));
    return capacity && *capacity < kLowCapacity;
}

bool isZoneHot(const QString& zone)
{
    const std::optional<int> heat = number(zone + QStringLiteral("/temp"));
    if (!heat)
        return false;
    for (int point = 0; point < kMostTripPoints; ++point) {
        const QString name = zone + QStringLiteral("/trip_point_%1_").arg(point);
        const QByteArray type = read(name + QStringLiteral("type"));
        if (type.isEmpty())
            break; // they are numbered without gaps
        if (type != "critical" && type != "hot")
            continue;
        const std::optional<int> limit = number(name + QStringLiteral("temp"));
        // Sensors without a limit of their own tell zero or less.
        if (limit && *limit > 0 && *heat > *limit - kHeatMargin)
            return true;
    }
    return false;
}

} // namespace

bool isBatteryLow(const QString& root)
{
    return std::ranges::any_of(entries(root + QStringLiteral("/class/power_supply"), QStringLiteral("*")),
                               isLowBattery);
}

bool isPowerSaving(const QString& root)
{
    return read(root + QStringLiteral("/firmware/acpi/platform_profile")) == "low-power";
}

bool isHot(const QString& root)
{
    return std::ranges::any_of(entries(root + QStringLiteral("/class/thermal"), QStringLiteral("thermal_zone*")),
                               isZoneHot);
}

bool areResourcesConstrained(const QString& root)
{
    return isPowerSaving(root) || isBatteryLow(root) || isHot(root);
}

} // namespace PowerState
