#include "support/SoundFiles.h"

#include "support/Encoder.h"
#include "support/Machine.h"
#include "support/Recordings.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

QString pathOf(const QString& name)
{
    static const QTemporaryDir folder;
    return folder.filePath(name);
}

} // namespace

void SoundFiles::PrintTo(const Kind& kind, std::ostream* out)
{
    *out << kind.name;
}

QString SoundFiles::make(const Kind& kind)
{
    const QString path = pathOf(QString::fromUtf8(kind.name));
    if (QFile::exists(path))
        return path;
    // Noise beside the tones: without it many frames would be alike, and a wrong place would go unseen.
    QStringList expressions;
    for (int channel = 0; channel < kind.channelCount; ++channel)
        expressions +=
            QStringLiteral("0.4*sin(%1*PI*t*(1+0.2*sin(t)))+0.05*random(%2)").arg(600 + 77 * channel).arg(channel);
    const QString sound = QStringLiteral("aevalsrc=%1:s=%2:d=5 ").arg(expressions.join(u'|')).arg(kind.sampleRate);
    EXPECT_TRUE(Encoder::encode(sound + QLatin1StringView(kind.arguments), path)) << kind.name;
    return path;
}

QString SoundFiles::write(const QString& name, const QByteArray& bytes)
{
    return writeFile(pathOf(name), bytes);
}

QByteArray SoundFiles::bytesOf(const QString& path)
{
    const QByteArray bytes = readFile(path);
    EXPECT_FALSE(bytes.isEmpty()) << path.toStdString();
    return bytes;
}

std::vector<float> SoundFiles::decoded(const QString& path)
{
    const QStringList output = QStringLiteral("-v error -map 0:a:0 -f f32le -").split(u' ');
    return Recordings::samplesOf(outputOf(QStringLiteral("ffmpeg"), QStringList{QStringLiteral("-i"), path} + output));
}

std::vector<float> SoundFiles::rest(AudioFileReader& reader)
{
    constexpr size_t kMostSamples = 40'000'000;
    const auto channels = static_cast<size_t>(reader.channelCount());
    std::vector<float> all;
    for (size_t frames = 1; all.size() < kMostSamples; frames = frames * 3 % 5003 + 1) {
        std::vector<float> piece(frames * channels);
        const auto got = static_cast<size_t>(reader.read(piece));
        all.insert(all.end(), piece.begin(), piece.begin() + static_cast<std::ptrdiff_t>(got * channels));
        if (got < frames)
            return all;
    }
    ADD_FAILURE() << "the sound does not end";
    return all;
}
