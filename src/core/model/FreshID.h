#pragma once

#include <QUuid>

/// A random identity (UUID version 4). From a generator of the thread that was seeded by the system once: asking the
/// system for every one of the three of a track costs more than reading its name. Thread: any.
QUuid freshID();
