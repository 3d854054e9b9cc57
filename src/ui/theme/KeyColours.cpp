#include "ui/theme/KeyColours.h"

#include <QRegularExpression>

#include <array>

namespace {

// From mint over green, yellow, orange, rose and violet to blue.
constexpr std::array<QRgb, 12> kWheel{0xFF7FE3C4, 0xFF8FE88F, 0xFFB6EA7C, 0xFFE6E07A, 0xFFF6C27A, 0xFFF79C8A,
                                      0xFFF58FB4, 0xFFE59AF0, 0xFFBFA0F7, 0xFF9DB4FB, 0xFF86CDF5, 0xFF7BE0E6};
constexpr int kSemitones = 12;

std::optional<CamelotKey> parseCamelot(const QString& text)
{
    static const QRegularExpression kPattern(QStringLiteral(R"(^0?(1[0-2]|[1-9])\s*([ABab])$)"));
    const QRegularExpressionMatch match = kPattern.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    return CamelotKey{match.captured(1).toInt(), match.captured(2).toUpper() == QLatin1StringView("B")};
}

int pitchClass(QChar letter, const QString& accidental)
{
    constexpr std::array kNatural{9, 11, 0, 2, 4, 5, 7}; // A to G
    int pitch = kNatural[static_cast<size_t>(letter.toUpper().unicode() - u'A')];
    if (accidental == QLatin1StringView("#") || accidental == QStringLiteral("♯"))
        ++pitch;
    else if (!accidental.isEmpty())
        --pitch;
    return (pitch + kSemitones) % kSemitones;
}

} // namespace

QString CamelotKey::code() const
{
    return QString::number(number) + (isMajor ? u'B' : u'A');
}

std::optional<CamelotKey> KeyColours::parse(const QString& text)
{
    const QString trimmed = text.trimmed();
    if (const auto camelot = parseCamelot(trimmed))
        return camelot;
    static const QRegularExpression kNote(QStringLiteral("^([A-Ga-g])\\s*([#♯b♭]?)\\s*(m|min|minor|maj|major|M|)$"));
    const QRegularExpressionMatch match = kNote.match(trimmed);
    if (!match.hasMatch())
        return std::nullopt;
    const QString mode = match.captured(3);
    const bool isMajor = mode.isEmpty() || mode.startsWith(QLatin1StringView("maj")) || mode == QLatin1StringView("M");
    // One step round the wheel is a fifth, seven semitones. A minor key stands beside its relative major, three above.
    const int pitch = pitchClass(match.captured(1)[0], match.captured(2));
    const int major = isMajor ? pitch : (pitch + 3) % kSemitones;
    const int number = (major * 7 + 7) % kSemitones + 1; // C major is 8B
    return CamelotKey{number, isMajor};
}

QColor KeyColours::colour(const CamelotKey& key)
{
    return QColor(kWheel[static_cast<size_t>((key.number - 1) % kSemitones)]);
}

QColor KeyColours::chipText()
{
    return QColor(0x14161A);
}
