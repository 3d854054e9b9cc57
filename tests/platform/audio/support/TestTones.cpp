#include "support/TestTones.h"

#include "support/Encoder.h"

namespace TestTones {

bool make(const QString& path, double seconds, int sampleRate, const QString& arguments, int channels)
{
    // Two tones and seeded noise: no two moments are alike, so that a repeat or a gap cannot hide.
    const QString source =
        QStringLiteral("aevalsrc=exprs=%1:s=%2:d=%3")
            .arg(QStringList(channels, QStringLiteral("0.3*sin(440*2*PI*t)+0.2*sin(1000*t*t)+0.1*(random(0)-0.5)"))
                     .join(u'|'))
            .arg(sampleRate)
            .arg(seconds);
    return Encoder::encode(source + u' ' + arguments, path);
}

std::vector<float> left(const std::vector<float>& stereo)
{
    std::vector<float> samples;
    for (size_t index = 0; index < stereo.size(); index += 2)
        samples.push_back(stereo[index]);
    return samples;
}

} // namespace TestTones
