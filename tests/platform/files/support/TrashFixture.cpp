#include "support/TrashFixture.h"

#include "support/Machine.h"
#include "support/Thrown.h"

#include <QFile>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include <sys/stat.h>

namespace fs = std::filesystem;

// Qt's temporary folder does not get rid of names that are not UTF-8.
TrashFixture::TrashFixture()
{
    std::string pattern = (fs::canonical(fs::temp_directory_path()) / "trash-XXXXXX").string();
    m_root = mkdtemp(pattern.data());
    for (const char* folder : {"music", "volume", "home"})
        makeFolder(folder);
}

TrashFixture::~TrashFixture()
{
    std::error_code error;
    fs::remove_all(m_root.toStdString(), error);
    EXPECT_FALSE(error) << error.message();
}

QByteArray TrashFixture::write(const QByteArray& relative, const QByteArray& bytes) const
{
    const fs::path target = path(relative).toStdString();
    fs::create_directories(target.parent_path());
    std::ofstream file(target, std::ios::binary);
    file << bytes.toStdString();
    EXPECT_TRUE(file.flush()) << target;
    return path(relative);
}

void TrashFixture::makeFolder(const QByteArray& relative, unsigned mode) const
{
    fs::create_directories(path(relative).toStdString());
    EXPECT_EQ(chmod(path(relative).constData(), mode), 0);
}

void TrashFixture::link(const QByteArray& relative, const QByteArray& target) const
{
    fs::create_symlink(target.toStdString(), path(relative).toStdString());
}

QByteArrayList TrashFixture::names(const QByteArray& relative) const
{
    QByteArrayList result;
    std::error_code missing;
    for (const auto& entry : fs::directory_iterator(path(relative).toStdString(), missing))
        result.append(QByteArray::fromStdString(entry.path().filename().string()));
    std::ranges::sort(result);
    return result;
}

std::optional<QByteArray> contents(const QByteArray& path)
{
    std::ifstream file(path.toStdString(), std::ios::binary);
    if (!file)
        return std::nullopt;
    return QByteArray::fromStdString({std::istreambuf_iterator<char>(file), {}});
}

bool isThere(const QByteArray& path)
{
    return fs::exists(fs::symlink_status(path.toStdString()));
}

unsigned modeOf(const QByteArray& path)
{
    struct stat facts = {};
    EXPECT_EQ(lstat(path.constData(), &facts), 0) << path.constData();
    return facts.st_mode & 07777;
}

std::optional<TrashError::Case> errorOf(const std::function<void()>& call)
{
    const auto error = thrown<TrashError>(call);
    return error ? std::optional(error->which()) : std::nullopt;
}

QMap<QByteArray, ReadInfo> readByAnother(const QByteArray& trash)
{
    const QStringList arguments{QStringLiteral(VELMORA_SOURCE_DIR "/tests/platform/files/read_trash.py"),
                                QFile::decodeName(trash)};
    QMap<QByteArray, ReadInfo> result;
    for (const QByteArray& line : outputOf(QStringLiteral("python3"), arguments).trimmed().split('\n')) {
        const QByteArrayList fields = line.split(' ');
        if (fields.size() == 3)
            result.insert(QByteArray::fromHex(fields.at(0)),
                          {QByteArray::fromHex(fields.at(1)), fields.at(2).toLongLong()});
    }
    return result;
}
