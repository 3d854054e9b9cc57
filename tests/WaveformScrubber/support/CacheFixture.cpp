#include "support/CacheFixture.h"

#include "WaveformScrubber/cache/WaveformCacheError.h"
#include "WaveformScrubber/decoding/AudioProcessingError.h"
#include "async/Cancelled.h"
#include "async/MainQueue.h"
#include "platform/FileURL.h"
#include "support/FileTimes.h"
#include "support/Machine.h"

namespace {

QString textOf(const Envelope& envelope)
{
    return QStringLiteral("envelope %1").arg(envelope->front());
}

// Called inside a catch block.
QString nameOfError()
{
    try {
        throw;
    } catch (const async::Cancelled&) {
        return QStringLiteral("cancelled");
    } catch (const WaveformCacheError& error) {
        if (error.which() == WaveformCacheError::Case::FileReadNoSuchFile)
            return QStringLiteral("no such file");
        return error.domain() + u' ' + QString::number(error.code().value());
    } catch (const AudioProcessingError& error) {
        return error.caseName();
    }
}

} // namespace

CacheFixture::CacheFixture()
{
    restart();
}

CacheFixture::~CacheFixture()
{
    for (Answer& one : m_answers)
        one.task.cancel();
    m_cache.reset();
    async::MainQueue::drain(); // before the answers go, which are written after a stop, too
}

void CacheFixture::restart()
{
    m_cache.reset();
    async::MainQueue::drain();
    m_cache = std::make_unique<WaveformCache>(
        m_clock, m_executor, folder(), [this](const QUrl& url, LowImpact lowImpact, const std::stop_token& stop) {
            return compute(url, lowImpact, stop);
        });
    m_executor.runAll(); // the sweep
}

std::vector<float> CacheFixture::compute(const QUrl& url, LowImpact lowImpact, const std::stop_token& stop)
{
    m_computed.append(url.fileName() + (lowImpact == LowImpact::Yes ? QStringLiteral(" low") : QString()));
    std::vector<float> samples(kEnvelopeSampleCount, m_level);
    if (const auto during = m_during) // a copy, which may put another one in its place
        during(stop);
    return samples;
}

QUrl CacheFixture::put(const QString& name, int byteCount) const
{
    static int number = 0;
    const QUrl url = file(name);
    const QString path = writeFile(url.toLocalFile(), QByteArray(byteCount, 'x'));
    setModified(path, QDateTime::fromSecsSinceEpoch(1700000000 + ++number));
    return url;
}

QString CacheFixture::entryPath(const QUrl& url) const
{
    return EnvelopeFolder::entryPath(folder(), envelopeKey(url, FileStamp::of(url).value()));
}

Answer& CacheFixture::ask(const QUrl& url, LowImpact lowImpact)
{
    Answer& one = m_answers.emplace_back();
    one.task.start([this, &one, url, lowImpact](std::stop_token stop) {
        return answer(&one, m_cache->samples(url, lowImpact, std::move(stop)));
    });
    return one;
}

Answer& CacheFixture::askStored(const QUrl& url)
{
    Answer& one = m_answers.emplace_back();
    one.task.start(
        [this, &one, url](std::stop_token stop) { return answerStored(&one, m_cache->stored(url, std::move(stop))); });
    return one;
}

QString CacheFixture::answerFor(const QUrl& url)
{
    const Answer& one = ask(url);
    m_executor.runAll();
    return one.text;
}

QString CacheFixture::storedAnswerFor(const QUrl& url)
{
    const Answer& one = askStored(url);
    m_executor.runAll();
    return one.text;
}

async::Task<> CacheFixture::answer(Answer* answer, async::Task<Envelope> task)
{
    try {
        answer->text = textOf(co_await task);
    } catch (...) {
        answer->text = nameOfError();
    }
}

async::Task<> CacheFixture::answerStored(Answer* answer, async::Task<std::optional<Envelope>> task)
{
    const std::optional<Envelope> envelope = co_await task;
    answer->text = envelope ? textOf(*envelope) : QStringLiteral("nothing");
}
