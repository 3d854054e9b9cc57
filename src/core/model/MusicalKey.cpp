#include "core/model/MusicalKey.h"

#include <QHash>

namespace {

/// The numbers of the pitch classes from C upwards: a fifth is one step on the wheel, a minor key stands with its
/// relative major.
constexpr int kMajorNumbers[] = {8, 3, 10, 5, 12, 7, 2, 9, 4, 11, 6, 1};
constexpr int kMinorNumbers[] = {5, 12, 7, 2, 9, 4, 11, 6, 1, 8, 3, 10};
constexpr int kHighestNumber = 12;

const auto& numbersOf(MusicalKeyMode mode)
{
    return mode == MusicalKeyMode::Minor ? kMinorNumbers : kMajorNumbers;
}

std::optional<int> pitchClassOf(const QString& name)
{
    static const QHash<QString, int> kPitchClasses{
        {QStringLiteral("c"), 0},  {QStringLiteral("b#"), 0},  {QStringLiteral("c#"), 1},  {QStringLiteral("db"), 1},
        {QStringLiteral("d"), 2},  {QStringLiteral("d#"), 3},  {QStringLiteral("eb"), 3},  {QStringLiteral("e"), 4},
        {QStringLiteral("fb"), 4}, {QStringLiteral("e#"), 5},  {QStringLiteral("f"), 5},   {QStringLiteral("f#"), 6},
        {QStringLiteral("gb"), 6}, {QStringLiteral("g"), 7},   {QStringLiteral("g#"), 8},  {QStringLiteral("ab"), 8},
        {QStringLiteral("a"), 9},  {QStringLiteral("a#"), 10}, {QStringLiteral("bb"), 10}, {QStringLiteral("b"), 11},
        {QStringLiteral("cb"), 11}};
    const auto found = kPitchClasses.constFind(name);
    return found == kPitchClasses.cend() ? std::nullopt : std::optional(*found);
}

QString withoutBlanks(QString text)
{
    text.removeIf([](QChar character) { return character.isSpace(); });
    return text;
}

/// Takes the suffix off that names the mode.
MusicalKeyMode takeMode(QString& name)
{
    struct Suffix {
        QLatin1StringView text;
        MusicalKeyMode mode;
    };
    // Longer ones first; a bare "m" last.
    static constexpr Suffix kSuffixes[] = {{QLatin1StringView("minor"), MusicalKeyMode::Minor},
                                           {QLatin1StringView("major"), MusicalKeyMode::Major},
                                           {QLatin1StringView("min"), MusicalKeyMode::Minor},
                                           {QLatin1StringView("maj"), MusicalKeyMode::Major},
                                           {QLatin1StringView("m"), MusicalKeyMode::Minor}};
    for (const Suffix& suffix : kSuffixes) {
        if (name.endsWith(suffix.text)) {
            name.chop(suffix.text.size());
            return suffix.mode;
        }
    }
    return MusicalKeyMode::Major;
}

/// A whole number in the way of foreign data: digits with an optional sign.
std::optional<int> wholeNumber(QStringView text)
{
    const bool isSigned = text.startsWith(u'+') || text.startsWith(u'-');
    const QStringView digits = isSigned ? text.sliced(1) : text;
    if (digits.isEmpty())
        return std::nullopt;
    int value = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9')
            return std::nullopt;
        value = qMin(value * 10 + (digit.unicode() - u'0'), 1000); // far beyond any number of the wheel
    }
    return text.startsWith(u'-') ? -value : value;
}

/// As everywhere: a name that begins with its only point has no extension.
QString withoutExtension(const QString& fileName)
{
    const QString name = fileName.sliced(fileName.lastIndexOf(u'/') + 1);
    const qsizetype point = name.lastIndexOf(u'.');
    return point > 0 ? name.first(point) : name;
}

/// Letters and digits; an accent or another mark that is written as a character of its own belongs to what it stands
/// on.
bool belongsToAWord(char32_t character, bool wasPartOfAWord)
{
    return QChar::isLetterOrNumber(character) || (wasPartOfAWord && QChar::isMark(character));
}

} // namespace

int MusicalKey::camelotNumber() const
{
    Q_ASSERT(pitchClass >= 0 && pitchClass < kHighestNumber);
    return numbersOf(mode)[pitchClass];
}

QString MusicalKey::camelot() const
{
    return QString::number(camelotNumber()) + QLatin1Char(mode == MusicalKeyMode::Minor ? 'A' : 'B');
}

std::optional<MusicalKey> MusicalKey::fromCamelotCode(const QString& code)
{
    for (const MusicalKeyMode mode : {MusicalKeyMode::Minor, MusicalKeyMode::Major}) {
        for (int pitchClass = 0; pitchClass < kHighestNumber; ++pitchClass) {
            const MusicalKey key{pitchClass, mode};
            if (key.camelot() == code)
                return key;
        }
    }
    return std::nullopt;
}

std::optional<QString> MusicalKey::normalizedCamelotCode(const QString& text)
{
    const QString code = text.trimmed().toUpper();
    if (!code.endsWith(u'A') && !code.endsWith(u'B'))
        return std::nullopt;
    const std::optional<int> number = wholeNumber(QStringView(code).chopped(1));
    if (!number || *number < 1 || *number > kHighestNumber)
        return std::nullopt;
    return QString::number(*number) + code.back();
}

std::optional<QString> MusicalKey::camelotCode(const QString& fromMetadataValue)
{
    if (const std::optional<QString> code = normalizedCamelotCode(fromMetadataValue))
        return code;
    QString name = withoutBlanks(fromMetadataValue.trimmed().toLower());
    name.replace(u'♯', u'#').replace(u'♭', u'b');
    const MusicalKeyMode mode = takeMode(name);
    const std::optional<int> pitchClass = pitchClassOf(name);
    return pitchClass ? std::optional(MusicalKey{*pitchClass, mode}.camelot()) : std::nullopt;
}

std::optional<QString> MusicalKey::embeddedCamelotCode(const QString& inFileName)
{
    const QString name = withoutExtension(inFileName);
    QString piece;
    bool isInWord = false;
    for (const char32_t character : (name + u' ').toUcs4()) {
        isInWord = belongsToAWord(character, isInWord);
        if (isInWord) {
            piece += QChar::fromUcs4(character);
            continue;
        }
        if (const std::optional<QString> code = normalizedCamelotCode(piece))
            return code;
        piece.clear();
    }
    return std::nullopt;
}
