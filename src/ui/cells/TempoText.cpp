#include "ui/cells/TempoText.h"

#include "ui/text/Texts.h"

namespace TempoText {

const QString kEstimateMark = QStringLiteral("≈ ");

QString bpmDisplayText(const Track& track, const PlaylistBPMState& state)
{
    if (state.isAnalyzing)
        return QStringLiteral("…");
    const QString estimate = state.estimatedBPM.value_or(QString()).trimmed();
    if (!estimate.isEmpty())
        return kEstimateMark + estimate;
    const QString tag = track.tags().bpm.trimmed();
    return tag.isEmpty() ? QStringLiteral("—") : tag;
}

QString spoken(const Track& track, const PlaylistBPMState& state)
{
    if (state.isAnalyzing)
        return Texts::localized(QStringLiteral("Темп определяется"));
    const QString estimate = state.estimatedBPM.value_or(QString()).trimmed();
    if (!estimate.isEmpty())
        return VelmoraLocalization::format(QStringLiteral("около %@"), {estimate});
    const QString tag = track.tags().bpm.trimmed();
    return tag.isEmpty() ? Texts::localized(QStringLiteral("Не указано")) : tag;
}

QString toolTip(const Tempo& tempo, const TrackID& id)
{
    const std::optional<QString> estimate = tempo.playlistBPMState(id).estimatedBPM;
    if (!estimate || estimate->trimmed().isEmpty())
        return {};
    QStringList lines{VelmoraLocalization::format(QStringLiteral("Определён темп: %@ BPM"), {estimate->trimmed()})};
    if (const std::optional<double> confidence = tempo.confidence(id))
        lines.append(VelmoraLocalization::format(QStringLiteral("Уверенность: %d %"), {qRound(*confidence * 100)}));
    QStringList others;
    for (const TempoEstimate::Alternative& other : tempo.alternatives(id)) {
        const QString text = QString::number(qRound(other.bpm));
        if (text != estimate->trimmed())
            others.append(text);
    }
    if (!others.isEmpty())
        lines.append(
            VelmoraLocalization::format(QStringLiteral("Другие варианты: %@"), {others.join(QStringLiteral(" · "))}));
    return lines.join(u'\n');
}

} // namespace TempoText
