#include "platform/DeepWalk.h"

#include "async/Cancelled.h"
#include "platform/FileURL.h"
#include "platform/OpenFolder.h"
#include "platform/TemporaryName.h"

#include <QFile>

#include <cerrno>
#include <climits>
#include <ctime>
#include <set>
#include <vector>

#include <fcntl.h>

namespace DeepWalk {

namespace {

constexpr time_t kStrayAge = 3600; // seconds; chosen: no write of tags takes nearly as long
constexpr QByteArrayView kAppleDoubleName = "._";
constexpr QByteArrayView kAppleDoubleMagic("\x00\x05\x16\x07", 4); // RFC 1740, section 5

enum class Kind { Folder, Regular, Other };

Kind kindOf(mode_t mode)
{
    return S_ISDIR(mode) ? Kind::Folder : S_ISREG(mode) ? Kind::Regular : Kind::Other;
}

/// One walk. Folders wait as paths, not as open directories, so that no depth runs out of file descriptors.
class Walker {
public:
    Walker(const std::function<bool(QStringView)>& isWanted, std::stop_token stop)
        : m_isWanted(isWanted)
        , m_stop(std::move(stop))
        , m_now(std::time(nullptr))
    {
    }

    void walkGiven(const QUrl& url);
    Result takeResult() { return std::move(m_result); }

private:
    void pollStop() const
    {
        if (m_stop.stop_requested())
            throw async::Cancelled();
    }
    void walkFolders(const QByteArray& root);
    void walkFolder(const QByteArray& path);
    void meetEntry(int folder, const QByteArray& path, const dirent& entry);
    void meetLinkOrUnknown(int folder, const QByteArray& path, const dirent& entry);
    void meetRegular(int folder, const char* name, const QByteArray& path);
    void meetStray(int folder, const char* name, const QByteArray& path);
    void take(const QByteArray& path);
    bool isWanted(QByteArrayView name) const;

    const std::function<bool(QStringView)>& m_isWanted;
    std::stop_token m_stop;
    time_t m_now;
    Result m_result;
    std::vector<QByteArray> m_folders;
    std::vector<QByteArray> m_linkedFolders; // after the real ones, so that files get their real paths
    std::set<OpenFolder::Identity> m_visited;
};

QByteArray joined(const QByteArray& folder, QByteArrayView name)
{
    QByteArray path;
    path.reserve(folder.size() + 1 + name.size());
    path.append(folder);
    if (!path.endsWith('/'))
        path.append('/');
    return path.append(name);
}

QByteArrayView nameOf(const QByteArray& path)
{
    return QByteArrayView(path).sliced(path.lastIndexOf('/') + 1);
}

bool Walker::isWanted(QByteArrayView name) const
{
    if (name.isValidUtf8())
        return m_isWanted(QString::fromUtf8(name));
    // Such a name cannot be asked about; its extension can, in front of any letter.
    const qsizetype point = name.lastIndexOf('.');
    return point > 0 && m_isWanted(u'x' + QString::fromLatin1(name.sliced(point)));
}

void Walker::take(const QByteArray& path)
{
    // A longer path cannot be opened again to read the file; one that is no UTF-8 cannot be written as a URL.
    if (path.size() >= PATH_MAX || !path.isValidUtf8())
        ++m_result.notTaken;
    else
        m_result.files.append(FileURL::fromPath(QString::fromUtf8(path)));
}

void Walker::meetStray(int folder, const char* name, const QByteArray& path)
{
    const auto facts = FileAt::facts(folder, name);
    if (facts && facts->st_mtime < m_now - kStrayAge && path.size() < PATH_MAX && path.isValidUtf8())
        m_result.strayTemporaries.append(FileURL::fromPath(QString::fromUtf8(path)));
}

/// \param name how to reach the file from the folder; \param path its whole path.
void Walker::meetRegular(int folder, const char* name, const QByteArray& path)
{
    const QByteArrayView lastComponent = nameOf(path);
    if (TemporaryName::matches(lastComponent)) {
        meetStray(folder, name, path);
        return;
    }
    if (!isWanted(lastComponent))
        return;
    if (lastComponent.startsWith(kAppleDoubleName) &&
        FileAt::head(folder, name, kAppleDoubleMagic.size()) == kAppleDoubleMagic) {
        return; // belongs to the file beside it and holds no music
    }
    take(path);
}

void Walker::meetLinkOrUnknown(int folder, const QByteArray& path, const dirent& entry)
{
    const auto facts = FileAt::facts(folder, entry.d_name);
    const Kind kind = facts ? kindOf(facts->st_mode) : Kind::Other;
    if (kind == Kind::Folder) {
        auto& waiting = entry.d_type == DT_LNK ? m_linkedFolders : m_folders;
        waiting.push_back(joined(path, entry.d_name));
    } else if (kind == Kind::Regular) {
        meetRegular(folder, entry.d_name, joined(path, entry.d_name));
    } else if (isWanted(entry.d_name)) {
        ++m_result.notTaken;
    }
}

void Walker::meetEntry(int folder, const QByteArray& path, const dirent& entry)
{
    switch (entry.d_type) {
    case DT_DIR:
        m_folders.push_back(joined(path, entry.d_name));
        break;
    case DT_REG:
        meetRegular(folder, entry.d_name, joined(path, entry.d_name));
        break;
    case DT_LNK:
    case DT_UNKNOWN:
        meetLinkOrUnknown(folder, path, entry);
        break;
    default:
        if (isWanted(entry.d_name))
            ++m_result.notTaken;
    }
}

void Walker::walkFolder(const QByteArray& path)
{
    OpenFolder folder(path);
    if (!folder.isOpen()) {
        // What vanished since it was met is simply not there.
        if (folder.error() != ENOENT && folder.error() != ENOTDIR)
            ++m_result.unreadableFolders;
        return;
    }
    if (!m_visited.insert(folder.identity()).second)
        return;
    while (const dirent* entry = folder.next()) {
        pollStop();
        meetEntry(folder.descriptor(), path, *entry);
    }
    if (folder.error() != 0 && folder.error() != ENOENT)
        ++m_result.unreadableFolders;
}

void Walker::walkFolders(const QByteArray& root)
{
    m_folders.push_back(root);
    for (;;) {
        auto& waiting = m_folders.empty() ? m_linkedFolders : m_folders;
        if (waiting.empty())
            return;
        const QByteArray next = std::move(waiting.back());
        waiting.pop_back();
        pollStop();
        walkFolder(next);
    }
}

void Walker::walkGiven(const QUrl& url)
{
    pollStop();
    const QByteArray path = QFile::encodeName(FileURL::standardizedPath(url));
    // Only a folder can be reached by a path that is too long for one call.
    const bool isLongFolder = path.size() >= PATH_MAX && OpenFolder(path).isOpen();
    const auto facts = FileAt::facts(AT_FDCWD, path.constData());
    if (isLongFolder || (facts && kindOf(facts->st_mode) == Kind::Folder)) {
        walkFolders(path);
    } else if (facts && kindOf(facts->st_mode) == Kind::Regular) {
        meetRegular(AT_FDCWD, path.constData(), path);
    } else if (isWanted(nameOf(path)) && !TemporaryName::matches(nameOf(path))) {
        // A name that is not UTF-8 arrives with replacement characters and names no file.
        if (facts || path.contains("\xEF\xBF\xBD"))
            ++m_result.notTaken;
        else
            take(path);
    }
}

} // namespace

Result walk(const QList<QUrl>& urls, const std::function<bool(QStringView)>& isWanted, std::stop_token stop)
{
    Walker walker(isWanted, std::move(stop));
    for (const QUrl& url : urls)
        walker.walkGiven(url);
    return walker.takeResult();
}

} // namespace DeepWalk
