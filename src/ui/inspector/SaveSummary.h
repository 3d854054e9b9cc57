#pragma once

#include <QString>

class InspectorModel;

/// What a save of the tracks shown keeps in their files and what it takes away, in one sentence, or two
/// if some of the files cannot be written. Thread: main.
namespace SaveSummary {

/// Empty while it is not known. \param keepsOthers the preference.
QString text(const InspectorModel& model, bool keepsOthers);
/// Whether the sentence depends on the preference.
bool dependsOnPreference(const InspectorModel& model);

} // namespace SaveSummary
