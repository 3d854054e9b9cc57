// How long saving tags takes, the vault and the comparison of the sound included, against `cp` of the same file: with
// and without making it durable, and against a bare loop that does only what no save can leave out. The files are in
// memory when it begins.
// usage: bench_tag_writing            times
//        bench_tag_writing --memory   what the save of a large file takes above an idle program

#include "Measure.h"
#include "core/model/AudioTags.h"
#include "platform/FileURL.h"
#include "platform/files/FileCalls.h"
#include "tags/vault/TagVault.h"
#include "tags/writing/MetadataWriter.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdio>
#include <cstring>
#include <vector>

#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kRounds = 15;
constexpr int kMemorySeconds = 3 * 3600;

using Measure::median;
using Measure::secondsOf;

AudioTags tagsOf(int round)
{
    AudioTags tags;
    tags.title = QStringLiteral("Название %1").arg(round);
    tags.artist = QStringLiteral("Artist");
    tags.genre = QStringLiteral("House");
    return tags;
}

/// Noise of about so many bytes.
QString makeFile(const QString& folder, const QString& extension, qint64 megabytes)
{
    const double bytesPerSecond = extension == QLatin1StringView("mp3") ? 40'000 : 176'400;
    const QString path = QStringLiteral("%1/%2.%3").arg(folder).arg(megabytes).arg(extension);
    const QString noise = QStringLiteral("anoisesrc=duration=%1").arg(double(megabytes) * 1e6 / bytesPerSecond);
    QStringList arguments{QStringLiteral("-v"),
                          QStringLiteral("error"),
                          QStringLiteral("-y"),
                          QStringLiteral("-f"),
                          QStringLiteral("lavfi"),
                          QStringLiteral("-i"),
                          noise,
                          QStringLiteral("-ac"),
                          QStringLiteral("2"),
                          QStringLiteral("-ar"),
                          QStringLiteral("44100")};
    if (extension == QLatin1StringView("mp3"))
        arguments += {QStringLiteral("-b:a"), QStringLiteral("320k")};
    arguments += {QStringLiteral("-metadata"), QStringLiteral("title=Before"), path};
    if (QProcess::execute(QStringLiteral("ffmpeg"), arguments) != 0)
        qFatal("ffmpeg could not make the files");
    return path;
}

void run(const QString& program, const QStringList& arguments)
{
    if (QProcess::execute(program, arguments) != 0)
        qFatal("%s failed", qPrintable(program));
}

/// What no save can leave out: a whole new file, each block of it compared with the old one, on disk before it takes a
/// name and the name on disk after it. \return whether all of that went well.
bool copyAndCompare(const QByteArray& from, const QByteArray& to, const QByteArray& folder, bool isDurable)
{
    constexpr std::size_t kBlock = 256 * 1024;
    const QByteArray temporary = to + ".new";
    const int source = ::open(from.constData(), O_RDONLY | O_CLOEXEC);
    const int target = ::open(temporary.constData(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    std::vector<char> old(kBlock);
    std::vector<char> fresh(kBlock);
    bool isGood = source >= 0 && target >= 0;
    for (off_t done = 0; isGood;) {
        off_t in = done;
        off_t out = done;
        const ssize_t count = ::copy_file_range(source, &in, target, &out, kBlock, 0);
        if (count == 0)
            break;
        isGood = count > 0 && ::pread(source, old.data(), std::size_t(count), done) == count &&
                 ::pread(target, fresh.data(), std::size_t(count), done) == count &&
                 std::memcmp(old.data(), fresh.data(), std::size_t(count)) == 0;
        done += count;
    }
    isGood = isGood && (!isDurable || ::fsync(target) == 0);
    ::close(source);
    ::close(target);
    isGood = isGood && ::rename(temporary.constData(), to.constData()) == 0;
    if (const int directory = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); directory >= 0) {
        isGood = isGood && (!isDurable || ::fsync(directory) == 0);
        ::close(directory);
    }
    return isGood;
}

struct Times {
    double copy = 0;
    double bare = 0;
    double save = 0;
    double firstSave = 0;
};

/// Copies and saves take turns, so that both meet the same disk. A copy takes the place of the one before, as the saved
/// file does: giving up a large file costs the file system about as much as half a copy.
Times measure(const QString& path, const QString& folder, bool isDurable)
{
    SystemFileCalls::setSyncing(isDurable);
    const QString copy = folder + QStringLiteral("/copy");
    const QString vaultFolder = folder + QStringLiteral("/vault");
    const QUrl url = FileURL::fromPath(path);
    std::vector<double> copies;
    std::vector<double> bare;
    std::vector<double> saves;
    std::vector<double> firstSaves;
    for (int round = 0; round < kRounds; ++round) {
        copies.push_back(secondsOf([&] {
            run(QStringLiteral("cp"), {path, copy});
            if (isDurable)
                run(QStringLiteral("sync"), {copy});
        }));
        bare.push_back(secondsOf([&] {
            const QString other = folder + QStringLiteral("/bare");
            if (!copyAndCompare(QFile::encodeName(path), QFile::encodeName(other), QFile::encodeName(folder),
                                isDurable))
                qFatal("the bare loop failed");
        }));
        if (round % 3 == 0)
            QDir(vaultFolder).removeRecursively();
        TagVault vault(vaultFolder);
        auto& times = vault.holds(url) ? saves : firstSaves;
        times.push_back(secondsOf([&] {
            vault.keep(url);
            MetadataWriter::write(tagsOf(round), false, url);
        }));
    }
    SystemFileCalls::setSyncing(true);
    return {median(copies), median(bare), median(saves), median(firstSaves)};
}

/// Highest resident memory of this process so far, bytes.
qint64 peakMemory()
{
    QFile status(QStringLiteral("/proc/self/status"));
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    for (const QByteArray& line : status.readAll().split('\n')) {
        if (line.startsWith("VmHWM:"))
            return line.mid(6).simplified().split(' ').first().toLongLong() * 1024;
    }
    return 0;
}

int measureMemory(const QString& folder)
{
    const QString path = makeFile(folder, QStringLiteral("wav"), qint64(kMemorySeconds) * 176'400 / 1'000'000);
    TagVault vault(folder + QStringLiteral("/vault"));
    const qint64 idle = peakMemory();
    vault.keep(FileURL::fromPath(path));
    MetadataWriter::write(tagsOf(1), false, FileURL::fromPath(path));
    printf("%lld MB of sound: %.1f MB above idle (%.1f MB)\n", QFileInfo(path).size() / 1'000'000,
           double(peakMemory() - idle) / 1e6, double(idle) / 1e6);
    return 0;
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    if (argc > 1 && QByteArray(argv[1]) == "--memory")
        return measureMemory(folder.path());
    for (const char* extension : {"mp3", "wav", "flac"}) {
        for (const qint64 megabytes : {12, 50}) {
            const QString path = makeFile(folder.path(), QLatin1StringView(extension), megabytes);
            const double size = double(QFileInfo(path).size()) / 1e6;
            const Times plain = measure(path, folder.path(), false);
            printf("%s %.0f MB: cp %.1f ms, bare loop %+.1f, save %.1f ms (%+.1f), first save %.1f ms (%+.1f)\n",
                   extension, size, plain.copy * 1e3, (plain.bare - plain.copy) * 1e3, plain.save * 1e3,
                   (plain.save - plain.copy) * 1e3, plain.firstSave * 1e3, (plain.firstSave - plain.copy) * 1e3);
            const Times durable = measure(path, folder.path(), true);
            printf("%s %.0f MB durable: cp and sync %.1f ms, bare loop %.2f, save %.1f ms (%.2f), first save %.1f ms "
                   "(%.2f)\n",
                   extension, size, durable.copy * 1e3, durable.bare / durable.copy, durable.save * 1e3,
                   durable.save / durable.copy, durable.firstSave * 1e3, durable.firstSave / durable.copy);
        }
    }
    return 0;
}
