// How long reading tags, figures and pictures takes two files at a time, as an import does it, against one thread that
// does nothing but open every file with the tag library. Files are read once before, so that no disk is measured.
// usage: bench_tags [files]     (needs ffmpeg to make them)

#include "Measure.h"
#include "tags/AudioMetadataLoader.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <taglib/fileref.h>
#include <taglib/tag.h>

#include <atomic>
#include <cstdio>
#include <thread>

namespace {

constexpr int kRounds = 7;
constexpr int kReaders = 2; // files that an import reads at a time

using Measure::median;
using Measure::secondsOf;

/// A picture of some hundred kilobytes, as covers are.
void makeCover(const QString& path)
{
    QImage image(600, 600, QImage::Format_RGB32);
    QRandomGenerator random(1);
    random.fillRange(reinterpret_cast<quint32*>(image.bits()), image.sizeInBytes() / 4);
    image.save(path, "JPG", 50);
}

bool encode(const QString& folder, const QString& name, const QStringList& options)
{
    const QString cover = folder + QStringLiteral("/cover.jpg");
    const QStringList sound{QStringLiteral("-f"), QStringLiteral("lavfi"), QStringLiteral("-i"),
                            QStringLiteral("anoisesrc=duration=5:amplitude=0.1")};
    const QStringList picture{QStringLiteral("-i"),
                              cover,
                              QStringLiteral("-map"),
                              QStringLiteral("0"),
                              QStringLiteral("-map"),
                              QStringLiteral("1"),
                              QStringLiteral("-c:v"),
                              QStringLiteral("copy"),
                              QStringLiteral("-disposition:v"),
                              QStringLiteral("attached_pic")};
    const QStringList tags{QStringLiteral("-metadata"), QStringLiteral("title=Название трека (Extended Mix)"),
                           QStringLiteral("-metadata"), QStringLiteral("artist=Artist"),
                           QStringLiteral("-metadata"), QStringLiteral("album=Album"),
                           QStringLiteral("-metadata"), QStringLiteral("genre=House")};
    const QString path = folder + u'/' + name;
    const QStringList quiet{QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-y")};
    const bool takesPicture = !name.endsWith(QLatin1StringView("wav"));
    return QProcess::execute(QStringLiteral("ffmpeg"), quiet + sound + (takesPicture ? picture : QStringList()) + tags +
                                                           options + QStringList{path}) == 0;
}

/// Mostly MP3, as collections are.
QStringList makeFiles(const QString& folder, int count)
{
    makeCover(folder + QStringLiteral("/cover.jpg"));
    const bool isMade =
        encode(folder, QStringLiteral("a.mp3"), {QStringLiteral("-b:a"), QStringLiteral("320k")}) &&
        encode(folder, QStringLiteral("b.mp3"), {QStringLiteral("-q:a"), QStringLiteral("2")}) &&
        encode(folder, QStringLiteral("c.mp3"),
               {QStringLiteral("-b:a"), QStringLiteral("192k"), QStringLiteral("-write_id3v1"), QStringLiteral("1")}) &&
        encode(folder, QStringLiteral("d.flac"), {}) && encode(folder, QStringLiteral("e.m4a"), {}) &&
        encode(folder, QStringLiteral("f.wav"), {}) &&
        encode(folder, QStringLiteral("g.aiff"), {QStringLiteral("-write_id3v2"), QStringLiteral("1")});
    if (!isMade)
        qFatal("ffmpeg could not make the files");
    const QStringList originals = QDir(folder).entryList({QStringLiteral("?.*")}, QDir::Files, QDir::Name);
    QStringList paths;
    for (int index = 0; index < count; ++index) {
        const QString original = originals[index % originals.size()];
        paths.append(QStringLiteral("%1/%2-%3").arg(folder).arg(index).arg(original));
        if (!QFile::copy(folder + u'/' + original, paths.last()))
            qFatal("cannot copy");
    }
    return paths;
}

void readBarely(const QStringList& paths)
{
    std::size_t sum = 0;
    for (const QString& path : paths) {
        const TagLib::FileRef file(QFile::encodeName(path).constData());
        if (file.tag())
            sum += file.tag()->title().size() + file.tag()->artist().size() + file.tag()->comment().size();
        if (file.audioProperties())
            sum += static_cast<std::size_t>(file.audioProperties()->bitrate());
    }
    if (sum == 0)
        qFatal("nothing was read");
}

/// The rows keep what was read, so results are kept.
void readAsImport(const QStringList& paths, int readers)
{
    std::vector<std::optional<LoadedTrackMetadata>> results(static_cast<std::size_t>(paths.size()));
    std::atomic<std::size_t> next = 0;
    const auto readOn = [&] {
        for (std::size_t index = next++; index < results.size(); index = next++) {
            const QUrl url = QUrl::fromLocalFile(paths[static_cast<qsizetype>(index)]);
            results[index] = AudioMetadataLoader::loadIfReadable(url, {});
        }
    };
    {
        std::vector<std::jthread> threads;
        for (int index = 0; index < readers; ++index)
            threads.emplace_back(readOn);
    }
    if (!std::ranges::all_of(results, [](const auto& result) { return result.has_value(); }))
        qFatal("some file could not be read");
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    const int count = argc > 1 ? std::atoi(argv[1]) : 2000;
    const QTemporaryDir folder;
    const QStringList paths = makeFiles(folder.path(), count);
    readBarely(paths);
    std::vector<double> bare;
    std::vector<double> single;
    std::vector<double> pair;
    for (int round = 0; round < kRounds; ++round) {
        bare.push_back(secondsOf([&] { readBarely(paths); }));
        single.push_back(secondsOf([&] { readAsImport(paths, 1); }));
        pair.push_back(secondsOf([&] { readAsImport(paths, kReaders); }));
    }
    std::printf("files %d\nbare tag library, one thread   %.3f s\nloader, one thread             %.3f s (ratio %.2f)\n"
                "loader, two at a time          %.3f s (ratio %.2f, limit 1.20)\n",
                count, median(bare), median(single), median(single) / median(bare), median(pair),
                median(pair) / median(bare));
    return median(pair) <= 1.2 * median(bare) ? 0 : 1;
}
