#pragma once

#include "core/library/tagwriting/TagFiles.h"

#include <QHash>
#include <QList>
#include <QSet>

#include <functional>
#include <new>

/// Files' tags in memory: remembers what is asked for and fails on demand.
class FakeTagFiles final : public TagFiles {
public:
    struct Call {
        QString name; ///< "write", "artwork", "clean", "restore", "put back"
        TagWrite write;
        QByteArray artwork;
        CleanerFields fields;
        std::optional<QString> title;
        std::optional<QString> album;
    };

    void write(const TagWrite& write) override { note({QStringLiteral("write"), write, {}, {}, {}, {}}); }
    void assignArtwork(const QByteArray& artwork, const TagWrite& write) override
    {
        note({QStringLiteral("artwork"), write, artwork, {}, {}, {}});
    }
    void clean(CleanerFields fields, const std::optional<QString>& title, const std::optional<QString>& album,
               const QUrl& url) override
    {
        TagWrite place;
        place.url = url;
        note({QStringLiteral("clean"), place, {}, fields, title, album});
    }
    TagInventory inventory(const QUrl&) override
    {
        if (inventoryFails)
            throw std::bad_alloc();
        return held;
    }
    bool holdsOriginal(const QUrl& url) const override { return originals.contains(url); }
    void restoreOriginal(const QUrl& url) override
    {
        TagWrite place;
        place.url = url;
        note({QStringLiteral("restore"), place, {}, {}, {}, {}});
    }

    QByteArray present(const QUrl& url) override { return presentTags.value(url); }
    void putBack(const QByteArray& tags, const QUrl& url) override
    {
        TagWrite place;
        place.url = url;
        note({QStringLiteral("put back"), place, tags, {}, {}, {}});
    }

    QHash<QUrl, QByteArray> presentTags; ///< what present() gives
    /// Runs before a call counts as done; throws TagFileError to let it fail.
    std::function<void(const Call&)> before;
    QList<Call> calls;
    TagInventory held;
    bool inventoryFails = false; ///< as of a file that asks for all memory
    QSet<QUrl> originals;

private:
    void note(const Call& call)
    {
        calls.append(call);
        if (before)
            before(call);
    }
};
