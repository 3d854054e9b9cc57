#include "support/SoundServer.h"

#include "support/Machine.h"
#include "support/Recordings.h"
#include "support/TestTones.h"

#include <QFile>
#include <QStandardPaths>

namespace {
constexpr int kStartMilliseconds = 10'000;
constexpr auto kSink = "velmora_test";
} // namespace

QString SoundServer::whyNot()
{
    for (const char* program : {"pulseaudio", "parec", "pactl"}) {
        if (QStandardPaths::findExecutable(QString::fromLatin1(program)).isEmpty())
            return QStringLiteral("no program %1 here").arg(QLatin1StringView(program));
    }
    return {};
}

SoundServer::SoundServer(int sampleRate)
{
    const QString socket = m_folder.filePath(QStringLiteral("socket"));
    const QString alsa = m_folder.filePath(QStringLiteral("asound.conf"));
    writeFile(alsa, "</usr/share/alsa/alsa.conf>\npcm.!default { type pulse }\nctl.!default { type pulse }\n");
    qputenv("PULSE_SERVER", "unix:" + socket.toUtf8());
    qputenv("ALSA_CONFIG_PATH", alsa.toUtf8());
    qputenv("PULSE_RUNTIME_PATH", m_folder.path().toUtf8());
    qputenv("PULSE_STATE_PATH", m_folder.path().toUtf8());
    qputenv("PULSE_COOKIE", m_folder.filePath(QStringLiteral("cookie")).toUtf8());
    m_server.setProcessChannelMode(QProcess::MergedChannels);
    m_server.start(QStringLiteral("pulseaudio"),
                   {QStringLiteral("-n"), QStringLiteral("--daemonize=no"), QStringLiteral("--use-pid-file=no"),
                    QStringLiteral("--exit-idle-time=-1"), QStringLiteral("--disable-shm=yes"), QStringLiteral("-L"),
                    QStringLiteral("module-null-sink sink_name=%1 rate=%2 format=float32le")
                        .arg(QLatin1StringView(kSink))
                        .arg(sampleRate),
                    QStringLiteral("-L"),
                    QStringLiteral("module-native-protocol-unix auth-anonymous=1 socket=%1").arg(socket)});
    for (int waited = 0; waited < kStartMilliseconds && !QFile::exists(socket); waited += 50)
        m_server.waitForFinished(50);
}

SoundServer::~SoundServer()
{
    m_recorder.kill();
    m_recorder.waitForFinished();
    kill();
}

bool SoundServer::isRunning() const
{
    return m_server.state() == QProcess::Running;
}

void SoundServer::kill()
{
    m_server.kill();
    m_server.waitForFinished();
}

void SoundServer::startRecording()
{
    m_recorder.setStandardOutputFile(m_folder.filePath(QStringLiteral("recording")));
    const QString words =
        QStringLiteral("--device=%1.monitor --raw --format=float32le --channels=2 --latency-msec=10 --fix-rate");
    m_recorder.start(QStringLiteral("parec"), words.arg(QLatin1StringView(kSink)).split(u' '));
    m_recorder.waitForStarted();
    for (int waited = 0; waited < kStartMilliseconds; waited += 20) {
        if (QFile(m_folder.filePath(QStringLiteral("recording"))).size() > 0)
            return;
        m_recorder.waitForFinished(20);
    }
}

std::vector<float> SoundServer::recorded() const
{
    const QByteArray bytes = readFile(m_folder.filePath(QStringLiteral("recording")));
    return Recordings::withoutSilenceInFront(TestTones::left(Recordings::samplesOf(bytes)));
}

std::vector<float> SoundServer::stopRecording()
{
    std::vector<float> samples = recorded();
    m_recorder.kill();
    m_recorder.waitForFinished();
    return samples;
}
