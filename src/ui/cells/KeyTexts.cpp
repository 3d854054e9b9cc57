#include "ui/cells/KeyTexts.h"

#include "platform/FileURL.h"
#include "ui/text/Texts.h"

#include <array>
#include <cmath>

namespace {

constexpr int kHighestNumber = 12;

/// As musicians spell them: majors with flats, minors with sharps up to three of either.
QString noteName(const MusicalKey& key)
{
    static const std::array kMajor{
        QStringLiteral("до"),        QStringLiteral("ре-бемоль"), QStringLiteral("ре"),
        QStringLiteral("ми-бемоль"), QStringLiteral("ми"),        QStringLiteral("фа"),
        QStringLiteral("фа-диез"),   QStringLiteral("соль"),      QStringLiteral("ля-бемоль"),
        QStringLiteral("ля"),        QStringLiteral("си-бемоль"), QStringLiteral("си")};
    static const std::array kMinor{
        QStringLiteral("до"),        QStringLiteral("до-диез"),   QStringLiteral("ре"),
        QStringLiteral("ми-бемоль"), QStringLiteral("ми"),        QStringLiteral("фа"),
        QStringLiteral("фа-диез"),   QStringLiteral("соль"),      QStringLiteral("соль-диез"),
        QStringLiteral("ля"),        QStringLiteral("си-бемоль"), QStringLiteral("си")};
    const auto& names = key.mode == MusicalKeyMode::Minor ? kMinor : kMajor;
    return Texts::localized(names.at(static_cast<size_t>(key.pitchClass)));
}

MusicalKey atPlace(int number, MusicalKeyMode mode)
{
    const int wrapped = (number - 1 + kHighestNumber) % kHighestNumber + 1;
    const QChar letter = mode == MusicalKeyMode::Minor ? u'A' : u'B';
    return *MusicalKey::fromCamelotCode(QString::number(wrapped) + letter);
}

QString orUnset(const QString& text)
{
    return text.isEmpty() ? Texts::localized(QStringLiteral("Не указано")) : text;
}

QString variantsText(const MusicalKeyAnalysis& analysis)
{
    QStringList codes;
    for (const MusicalKeyAnalysis::Alternative& each : KeyTexts::variants(analysis))
        codes.append(each.key.camelot());
    return codes.join(QStringLiteral(" · "));
}

QString variantsTooltip(const MusicalKeyAnalysis& analysis)
{
    QStringList lines;
    for (const MusicalKeyAnalysis::Alternative& each : KeyTexts::variants(analysis))
        lines.append(
            Texts::facts({each.key.camelot(), KeyTexts::name(each.key), KeyTexts::confidence(each.relativeStrength)}));
    return lines.join(u'\n');
}

QString tagTooltip(const Track& track)
{
    const KeyTexts::InTag tag = KeyTexts::inTag(track);
    const std::optional<MusicalKey> key = KeyTexts::keyOf(tag.text);
    const QString origin =
        tag.isFromName ? Texts::localized(QStringLiteral("В теге пусто, код стоит в имени файла")) : QString();
    return Texts::facts({key && key->camelot() != tag.text ? tag.text : QString(), key ? key->camelot() : tag.text,
                         key ? KeyTexts::name(*key) : QString(), origin});
}

} // namespace

namespace KeyTexts {

std::optional<MusicalKey> keyOf(const QString& tag)
{
    const std::optional<QString> code = MusicalKey::camelotCode(tag);
    return code ? MusicalKey::fromCamelotCode(*code) : std::nullopt;
}

QString name(const MusicalKey& key)
{
    const bool isMinor = key.mode == MusicalKeyMode::Minor;
    return VelmoraLocalization::format(isMinor ? QStringLiteral("%@ минор") : QStringLiteral("%@ мажор"),
                                       {noteName(key)});
}

QList<MusicalKey> compatible(const MusicalKey& key)
{
    const int number = key.camelotNumber();
    const MusicalKeyMode other = key.mode == MusicalKeyMode::Minor ? MusicalKeyMode::Major : MusicalKeyMode::Minor;
    return {atPlace(number - 1, key.mode), atPlace(number + 1, key.mode), atPlace(number, other)};
}

QString confidence(double value)
{
    return VelmoraLocalization::locale().toString(value, 'f', 2);
}

QString tuning(double cents)
{
    const qint64 whole = std::llround(cents);
    const QString number = VelmoraLocalization::plural(QStringLiteral("%n центов"), std::abs(whole));
    if (whole == 0)
        return number;
    return (whole < 0 ? QChar(0x2212) : QChar(u'+')) + number;
}

bool isKeyColumn(TrackColumn column)
{
    return column == TrackColumn::KeyInTag || column == TrackColumn::FoundKey || column == TrackColumn::KeyConfidence ||
           column == TrackColumn::KeyVariants;
}

InTag inTag(const Track& track)
{
    const QString tag = track.tags().musicalKey.trimmed();
    if (!tag.isEmpty())
        return {tag};
    const std::optional<QString> code = MusicalKey::embeddedCamelotCode(FileURL::lastPathComponent(track.url()));
    return {code.value_or(QString()), code.has_value()};
}

QString step(KeyState::Step step)
{
    switch (step) {
    case KeyState::Step::Queued:
        return Texts::localized(QStringLiteral("В очереди"));
    case KeyState::Step::Running:
        return Texts::localized(QStringLiteral("Определяется…"));
    case KeyState::Step::Undetermined:
        return Texts::localized(QStringLiteral("Без результата"));
    case KeyState::Step::New:
    case KeyState::Step::Determined:
        break;
    }
    return {};
}

QString text(TrackColumn column, const Track& track, const KeyState& state)
{
    if (column == TrackColumn::KeyInTag)
        return inTag(track).text;
    if (!state.analysis)
        return column == TrackColumn::FoundKey ? step(state.step) : QString();
    if (column == TrackColumn::FoundKey)
        return state.analysis->key.camelot();
    return column == TrackColumn::KeyConfidence ? confidence(state.analysis->confidence)
                                                : variantsText(*state.analysis);
}

QString spoken(TrackColumn column, const Track& track, const KeyState& state)
{
    const QString words = text(column, track, state);
    if (column == TrackColumn::KeyInTag && inTag(track).isFromName)
        return Texts::facts({words, Texts::localized(QStringLiteral("из имени"))});
    if (column == TrackColumn::FoundKey && state.analysis)
        return Texts::facts({words, name(state.analysis->key)});
    return orUnset(words);
}

QString tooltip(TrackColumn column, const Track& track, const KeyState& state)
{
    if (column == TrackColumn::KeyInTag)
        return inTag(track).text.isEmpty() ? QString() : tagTooltip(track);
    if (state.step == KeyState::Step::Queued)
        return Texts::localized(QStringLiteral("В очереди. Тональность определяется, пока ничего не играет."));
    if (!state.analysis)
        return step(state.step);
    if (column == TrackColumn::FoundKey)
        return Texts::facts({state.analysis->key.camelot(), name(state.analysis->key)});
    if (column == TrackColumn::KeyVariants)
        return variantsTooltip(*state.analysis);
    return Texts::facts({Texts::localized(QStringLiteral("Уверенность")), confidence(state.analysis->confidence)});
}

QList<MusicalKeyAnalysis::Alternative> variants(const MusicalKeyAnalysis& analysis)
{
    QList<MusicalKeyAnalysis::Alternative> others = analysis.alternatives;
    others.removeIf([&](const MusicalKeyAnalysis::Alternative& each) { return each.key == analysis.key; });
    return others;
}

} // namespace KeyTexts
