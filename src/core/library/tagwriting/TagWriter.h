#pragma once

#include "core/model/AudioTags.h"

#include <QList>
#include <QUrl>

/// Writes tags into files, in the background, in order per file. The narrow seam between the workspace and the files.
class TagWriter {
public:
    struct Item {
        AudioTags tags;
        QUrl url;
    };

    virtual ~TagWriter() = default;

    /// Whether edits reach the files at all. While they do not, the status line says so with every edit.
    virtual bool writesFiles() const = 0;
    /// Writes all items in the background; failures reach Workspace::setLastError. An empty list does nothing.
    virtual void writeBatch(const QList<Item>& items) = 0;
};

/// Keeps edits in the workspace only.
class NoTagWriter final : public TagWriter {
public:
    bool writesFiles() const override { return false; }
    void writeBatch(const QList<Item>&) override {}
};
