#pragma once

#include "FuzzSources.h"

#include "core/model/AudioTags.h"
#include "tags/keeping/Inventories.h"
#include "tags/keeping/KeepingPlanners.h"
#include "tags/writing/AiffWriter.h"
#include "tags/writing/ChunkTagWriter.h"
#include "tags/writing/FlacWriter.h"
#include "tags/writing/M4aWriter.h"
#include "tags/writing/WavWriter.h"

#include <functional>

/// What can be done with the tags of one container.
struct Writer {
    std::function<RewritePlan(const RewriteSource&, const AudioTags&)> write;
    std::function<RewritePlan(const RewriteSource&, const TagEdits&)> clean;
    RewritePlan (*keep)(const RewriteSource& source, const KeepEdits& edits);
    void (*takeInventory)(const RewriteSource& source, TagInventory& inventory);
};

/// By the file's begin, so that the seeds are files as they are.
inline Writer writerOf(const QByteArray& bytes)
{
    const std::optional<QByteArray> artwork("picture");
    if (bytes.startsWith('f'))
        return {[=](const auto& source, const auto& tags) { return FlacWriter::planWrite(source, tags, artwork); },
                &FlacWriter::planClean, &KeepingPlanners::planFlac, &Inventories::takeFlac};
    if (bytes.startsWith('R'))
        return {[=](const auto& source, const auto& tags) { return WavWriter::planWrite(source, tags, artwork); },
                &WavWriter::planClean, &KeepingPlanners::planWav, &Inventories::takeWav};
    if (bytes.startsWith('F'))
        return {[=](const auto& source, const auto& tags) { return AiffWriter::planWrite(source, tags, artwork); },
                &AiffWriter::planClean, &KeepingPlanners::planAiff, &Inventories::takeAiff};
    return {&M4aWriter::planWrite, &M4aWriter::planClean, &KeepingPlanners::planM4a, &Inventories::takeM4a};
}
