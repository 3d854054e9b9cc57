#include "core/library/tagwriting/EditJournal.h"

#include "platform/FileURL.h"
#include "platform/files/AtomicFile.h"
#include "platform/files/FileCalls.h"
#include "platform/files/MakeFolders.h"
#include "platform/json/JsonMembers.h"
#include "platform/json/JsonReader.h"
#include "platform/json/JsonWriter.h"

#include <QDateTime>
#include <QFile>

#include <algorithm>
#include <cerrno>
#include <optional>

#include <fcntl.h>

namespace {

constexpr QLatin1StringView kName("/unwritten-edits-v1.jsonl"); // on disk, never change
constexpr QLatin1StringView kPath("path");                      // likewise
constexpr QLatin1StringView kSize("size");
constexpr QLatin1StringView kDate("date");
constexpr mode_t kFolderMode = 0700;
constexpr mode_t kFileMode = 0600;
constexpr qint64 kSlack = 1024 * 1024; // bytes of lines that no longer count, before the file is rewritten

QByteArray lineOf(const KeptEdit& edit)
{
    JsonWriter json(256);
    json.open('{');
    json.key(kPath);
    json.string(FileURL::standardizedPath(edit.url));
    if (edit.stamp) {
        json.key(kSize);
        json.number(edit.stamp->byteCount);
        json.key(kDate);
        json.number(edit.stamp->modificationDate);
    }
    for (size_t place = 0; place < AudioTags::fields().size(); ++place) {
        const AudioTags::Field& field = AudioTags::fields()[place];
        if (!edit.fields.testFlag(TagFieldSet::list()[place]))
            continue;
        json.key(QLatin1StringView(field.name));
        json.string(edit.tags.*field.value);
    }
    json.close('}');
    return json.take() + '\n';
}

void readField(JsonReader& json, QByteArrayView key, KeptEdit& edit)
{
    const auto& fields = AudioTags::fields();
    const auto field = std::ranges::find(fields, key, [](const AudioTags::Field& f) { return QByteArrayView(f.name); });
    if (field == fields.end()) {
        json.skip();
        return;
    }
    edit.fields |= TagFieldSet::list()[size_t(field - fields.begin())];
    edit.tags.*(field->value) = json.string();
}

/// Nothing for a line that was cut or damaged.
std::optional<KeptEdit> editOf(QByteArrayView line)
{
    JsonReader json(line);
    KeptEdit edit;
    QString path;
    FileStamp stamp;
    int stampKeys = 0;
    JsonMembers::forMembers(json, [&](QByteArrayView bytes) {
        const QLatin1StringView key(bytes.data(), bytes.size());
        if (key == kPath)
            path = json.string();
        else if (key == kSize && ++stampKeys)
            stamp.byteCount = json.integer();
        else if (key == kDate && ++stampKeys)
            stamp.modificationDate = json.number();
        else
            readField(json, bytes, edit);
    });
    if (stampKeys == 2)
        edit.stamp = stamp;
    if (json.hasFailed() || !json.atEnd() || !path.startsWith(u'/'))
        return std::nullopt;
    edit.url = FileURL::fromPath(path);
    return edit;
}

/// \return whether all bytes stand at the place, synced.
bool writeAt(const QByteArray& path, qint64 place, const QByteArray& bytes)
{
    FileCalls& calls = FileCalls::current();
    const int file = calls.open(path, O_WRONLY | O_CREAT, kFileMode);
    if (file < 0)
        return false;
    qint64 done = 0;
    while (done < bytes.size()) {
        const ssize_t count = calls.write(file, bytes.constData() + done, size_t(bytes.size() - done), place + done);
        if (count <= 0)
            break;
        done += count;
    }
    const bool isSynced = done == bytes.size() && calls.sync(file) == 0;
    return calls.close(file) == 0 && isSynced;
}

/// Of a file that cannot be read: 0 where there is none, else an errno.
int whyUnread(const QByteArray& path)
{
    struct statx facts;
    if (FileCalls::current().facts(path, AT_SYMLINK_NOFOLLOW, &facts) == 0)
        return EIO;
    return errno == ENOENT || errno == ENOTDIR ? 0 : errno;
}

} // namespace

EditJournal::EditJournal(const QString& folder, qint64 maximumBytes)
    : m_maximumBytes(maximumBytes)
    , m_folder(folder)
    , m_path(QFile::encodeName(folder + kName))
{
}

QList<KeptEdit> EditJournal::read()
{
    const std::lock_guard guard(m_lock);
    readLocked();
    QList<Line> lines = m_lines.values();
    std::ranges::sort(lines, {}, &Line::order);
    QList<KeptEdit> edits;
    for (const Line& line : std::as_const(lines)) {
        if (std::optional<KeptEdit> edit = editOf(line.bytes))
            edits.append(*std::move(edit));
    }
    return edits;
}

/// A line without its end was being written when the program stopped; the next one takes its place. \return 0, or the
/// errno of what keeps a file that is there from being read.
int EditJournal::readLocked()
{
    if (m_isRead)
        return 0;
    const std::optional<QByteArray> bytes = AtomicFile::read(m_path, m_maximumBytes);
    if (!bytes) {
        const int error = whyUnread(m_path);
        m_isRead = error == 0;
        return error;
    }
    qsizetype begin = 0;
    for (qsizetype end = bytes->indexOf('\n'); end >= 0; end = bytes->indexOf('\n', begin)) {
        takeLine(QByteArrayView(*bytes).sliced(begin, end + 1 - begin));
        begin = end + 1;
    }
    m_size = begin;
    m_isRead = true;
    return 0;
}

/// Edits of an earlier run may be in it. \return errno.
int EditJournal::putAside()
{
    const QString date = QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    if (FileCalls::current().rename(m_path, m_path + ".unread-" + date.toLatin1()) != 0)
        return errno;
    m_isRead = true;
    return 0;
}

void EditJournal::takeLine(QByteArrayView line)
{
    const std::optional<KeptEdit> edit = editOf(line);
    if (!edit)
        return;
    const QString path = FileURL::standardizedPath(edit->url);
    m_liveBytes -= m_lines.take(path).bytes.size();
    if (!edit->fields)
        return;
    m_lines.insert(path, {++m_order, line.toByteArray()});
    m_liveBytes += line.size();
}

bool EditJournal::note(const QList<KeptEdit>& edits, quint64 revision)
{
    const std::lock_guard guard(m_lock);
    if (revision <= m_revision || (edits.isEmpty() && !m_error))
        return !m_error;
    m_revision = revision;
    m_waiting += edits;
    if (readLocked() != 0)
        m_error = putAside();
    if (!m_isRead)
        return false;
    QByteArray lines;
    for (const KeptEdit& edit : std::exchange(m_waiting, {})) {
        const QByteArray line = lineOf(edit);
        takeLine(line);
        lines += line;
    }
    const bool isDue = m_lines.isEmpty() || m_size + lines.size() > std::min(m_maximumBytes, kSlack + 4 * m_liveBytes);
    const bool isAppended = !m_error && !isDue && appendLocked(lines);
    m_error = isAppended ? 0 : rewriteLocked();
    return !m_error;
}

int EditJournal::error()
{
    const std::lock_guard guard(m_lock);
    return m_error;
}

bool EditJournal::appendLocked(const QByteArray& lines)
{
    if (makeFolders(QFile::encodeName(m_folder), kFolderMode) != 0 || !writeAt(m_path, m_size, lines))
        return false;
    m_size += lines.size();
    return true;
}

/// What is kept, in the order in which it was edited. More than can be read again is not written: that is told as a
/// full disk is, and no edit goes in silence.
int EditJournal::rewriteLocked()
{
    if (m_liveBytes > m_maximumBytes)
        return EFBIG;
    QList<std::pair<quint64, QString>> order;
    for (auto line = m_lines.cbegin(); line != m_lines.cend(); ++line)
        order.append({line->order, line.key()});
    std::ranges::sort(order);
    QByteArray bytes;
    bytes.reserve(m_liveBytes);
    for (const auto& [place, path] : std::as_const(order))
        bytes += m_lines.value(path).bytes;
    if (const int error = AtomicFile::write(m_path, bytes))
        return error;
    m_size = bytes.size();
    return 0;
}
