#pragma once

#include <QString>

/// What the kernel tells of power and heat, below a root folder that holds "class" and "firmware" as /sys does. Every
/// look is bounded: so many entries, so many bytes of each. What a machine does not tell counts as no constraint.
/// Thread: any; blocks, and a sensor may take some milliseconds to answer.
namespace PowerState {

/// Whether a battery of the machine itself gives off power and holds less than a fifth of it.
bool isBatteryLow(const QString& root);
/// Whether the machine was told to save power.
bool isPowerSaving(const QString& root);
/// Whether a part of the machine is less than five degrees below the heat at which the kernel takes measures.
bool isHot(const QString& root);

/// Any of the three.
bool areResourcesConstrained(const QString& root);

} // namespace PowerState
