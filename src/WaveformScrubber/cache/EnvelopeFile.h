#pragma once

#include <QString>

#include <optional>
#include <span>
#include <vector>

/// One envelope on disk: 4,096 floats of 32 bits, little-endian, and nothing else. A file of another length counts as
/// absent. Thread: any but main.
namespace EnvelopeFile {

/// The envelope; nothing where there is none. Marks the file as used, at most once a day.
std::optional<std::vector<float>> read(const QString& path);
/// Replaces the file in one step and makes its folder; nothing when there are not exactly 4,096 values. \return whether
/// the file is there now: a read-only folder or a full disk only costs the entry.
bool write(const QString& path, std::span<const float> samples);

} // namespace EnvelopeFile
