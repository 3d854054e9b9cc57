#include "DemoEnvelopes.h"

#include "WaveformScrubber/cache/EnvelopeFile.h"
#include "WaveformScrubber/cache/EnvelopeFolder.h"
#include "WaveformScrubber/cache/EnvelopeKey.h"
#include "WaveformScrubber/shape/Envelope.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cmath>
#include <random>

#include <sys/stat.h>

namespace {

constexpr int kFilled = 40;

/// Intro, breaks and drops, each on a level of its own, with the beat as grain.
std::vector<float> envelope(unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<double> chance(0, 1);
    std::vector<float> samples;
    samples.reserve(kEnvelopeSampleCount);
    double level = 0.25;
    double target = 0.35;
    int left = 300;
    for (int i = 0; i < kEnvelopeSampleCount; ++i) {
        if (--left <= 0) {
            target = chance(random) < 0.3 ? 0.12 + 0.2 * chance(random) : 0.5 + 0.45 * chance(random);
            left = 160 + static_cast<int>(500 * chance(random));
        }
        level += (target - level) * 0.03;
        const double ends = std::min({1.0, i / 60.0, (kEnvelopeSampleCount - i) / 200.0});
        const double grain = 0.72 + 0.28 * chance(random);
        samples.push_back(static_cast<float>(std::min(1.0, level * grain * ends)));
    }
    return samples;
}

void makeEndless(const QString& path)
{
    QDir().mkpath(QFileInfo(path).path());
    ::mkfifo(QFile::encodeName(path).constData(), S_IRUSR | S_IWUSR);
}

} // namespace

int DemoEnvelopes::endlessRow()
{
    return kFilled;
}

void DemoEnvelopes::write(const QList<Track>& tracks, const QString& cacheFolder)
{
    unsigned seed = 7;
    // One file that is waited for without end.
    if (tracks.size() > kFilled)
        makeEndless(tracks[kFilled].url().toLocalFile());
    for (const Track& track : tracks.first(std::min<qsizetype>(kFilled, tracks.size()))) {
        const QString path = track.url().toLocalFile();
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly))
            continue;
        file.close();
        if (const auto stamp = FileStamp::of(track.url()))
            EnvelopeFile::write(EnvelopeFolder::entryPath(cacheFolder, envelopeKey(track.url(), *stamp)),
                                envelope(seed++));
    }
}
