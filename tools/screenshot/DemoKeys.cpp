#include "DemoKeys.h"

#include "core/library/LibraryStore.h"
#include "core/library/keys/Keys.h"
#include "core/library/playback/Playback.h"
#include "core/library/workspace/Workspace.h"

#include <QCoreApplication>

namespace {

constexpr int kWithoutResult = 4;
constexpr int kQueued[] = {7, 10};
const QStringList kCodes{QStringLiteral("8A"), QStringLiteral("10B"), QStringLiteral("5A"),  QStringLiteral("4A"),
                         QStringLiteral("2B"), QStringLiteral("9A"),  QStringLiteral("11A"), QStringLiteral("7B"),
                         QStringLiteral("1A"), QStringLiteral("3A"),  QStringLiteral("12B"), QStringLiteral("6A")};

MusicalKey key(int number, QChar letter)
{
    return *MusicalKey::fromCamelotCode(QString::number((number + 11) % 12 + 1) + letter);
}

MusicalKeyAnalysis analysis(int row)
{
    const MusicalKey own = *MusicalKey::fromCamelotCode(kCodes[row % kCodes.size()]);
    const QChar letter = own.camelot().back();
    const int number = own.camelotNumber();
    constexpr int kTunings[] = {0, -33, 0, 33};
    const double confidence = 0.4 + row * 37 % 45 / 100.0;
    return {own,
            confidence,
            static_cast<double>(kTunings[row % 4]),
            {{own, 1},
             {key(number + 1, letter), 0.9 - row % 3 * 0.1},
             {key(number - 1, letter), 0.6},
             {key(number, letter == u'A' ? u'B' : u'A'), 0.15 + row % 2 * 0.2}}};
}

} // namespace

void DemoKeys::fill(LibraryStore& library, bool waits)
{
    const QList<Track> rows = library.workspace().keyAnalysisTracks().rows();
    Keys& keys = library.keys();
    if (rows.size() > kWithoutResult) // there is no analysis here, so that none is heard
        keys.analyzeMusicalKey({rows[kWithoutResult].id()});
    while (keys.queuedCount() > 0)
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QHash<TrackID, MusicalKeyAnalysis> analyses;
    for (int row = 0; row < rows.size(); ++row) {
        if (row != kWithoutResult)
            analyses.insert(rows[row].id(), analysis(row));
    }
    keys.setMusicalKeyAnalyses(std::move(analyses));
    if (!waits)
        return;
    library.playback().playbackStateDidChange(true, std::nullopt);
    for (const int row : kQueued) {
        if (row < rows.size())
            keys.analyzeMusicalKey({rows[row].id()});
    }
}
