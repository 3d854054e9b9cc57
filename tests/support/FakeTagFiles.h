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
        note({QStringLiteral("clean"), {url, {}}, {}, fields, title, album});
    }
    TagInventory inventory(const QUrl&) override
    {
        if (inventoryFails)
            throw std::bad_alloc();
        return held;
    }
    bool holdsOriginal(const QUrl& url) const override { return originals.contains(url); }
    void restoreOriginal(const QUrl& url) override { note({QStringLiteral("restore"), {url, {}}, {}, {}, {}, {}}); }

    QByteArray present(const QUrl& url) override { return presentTags.value(url); }
    void putBack(const QByteArray& tags, const QUrl& url) override
    {
        note({QStringLiteral("put back"), {url, {}}, tags, {}, {}, {}});
    }

    /// Lets the calls for a file fail from now on, or for all.
    void fail(const char* message = "disk full", const QUrl& url = {})
    {
        before = [message, url](const Call& call) {
            if (url.isEmpty() || call.write.url == url)
                throw TagFileError(QString::fromUtf8(message), false);
        };
    }
    /// Names of the files, call by call.
    QString names() const
    {
        QStringList names;
        for (const Call& call : calls)
            names.append(call.write.url.fileName());
        return names.join(u' ');
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
