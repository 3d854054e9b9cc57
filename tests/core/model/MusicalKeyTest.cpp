#include "core/model/MusicalKey.h"

#include <QSet>
#include <gtest/gtest.h>

namespace {

struct Case {
    QStringView text;
    QStringView code; ///< empty: none
};

void expectCodes(std::span<const Case> cases, std::optional<QString> (*parse)(const QString&))
{
    for (const Case& entry : cases) {
        const QString text = entry.text.toString();
        EXPECT_EQ(parse(text).value_or(QString()), entry.code) << qPrintable(text);
    }
}

} // namespace

TEST(MusicalKey, NeighboursOnTheWheelAreFifthsAndRelatives)
{
    QSet<QString> codes;
    for (int pitchClass = 0; pitchClass < 12; ++pitchClass) {
        const MusicalKey major{pitchClass, MusicalKeyMode::Major};
        const MusicalKey fifth{(pitchClass + 7) % 12, MusicalKeyMode::Major};
        const MusicalKey relative{(pitchClass + 9) % 12, MusicalKeyMode::Minor};
        EXPECT_EQ(fifth.camelotNumber(), major.camelotNumber() % 12 + 1) << pitchClass;
        EXPECT_EQ(relative.camelotNumber(), major.camelotNumber()) << pitchClass;
        for (const MusicalKey& key : {major, relative}) {
            EXPECT_EQ(MusicalKey::fromCamelotCode(key.camelot()), key);
            codes.insert(key.camelot());
        }
    }
    EXPECT_EQ(codes.size(), 24);
    for (const QStringView code : {u"0A", u"13B", u"08A", u"8a", u"8", u""})
        EXPECT_FALSE(MusicalKey::fromCamelotCode(code.toString())) << qPrintable(code.toString());
}

TEST(MusicalKey, NormalizesCodes)
{
    static constexpr Case kCases[] = {
        {u"8A", u"8A"},
        {u"08a", u"8A"},
        {u" \t12b\n", u"12B"},
        {u"\u00A01A\u2003", u"1A"},
        {u"+8A", u"8A"}, // as every whole number may be written
        {u"0000000000000000000012A", u"12A"},
    };
    expectCodes(kCases, &MusicalKey::normalizedCamelotCode);
    // Among them 8 after an overflow of 32 and of 64 bits, digits of another script and a Cyrillic letter.
    const QString none =
        QStringLiteral("0A|13A|-8A|8|A|A8|8C|8 A|8.0A|4294967304A|18446744073709551624A|٨A|8А|8AB|+A||  ");
    for (const QString& text : none.split(u'|'))
        EXPECT_FALSE(MusicalKey::normalizedCamelotCode(text)) << qPrintable(text);
}

TEST(MusicalKey, ReadsWhatTagsHold)
{
    static constexpr Case kCases[] = {
        {u"Am", u"8A"},         {u"A minor", u"8A"}, {u"a min", u"8A"},  {u"8A", u"8A"},
        {u" 08a ", u"8A"},      {u"AM", u"8A"}, // case tells nothing
        {u"A", u"11B"},         {u"B", u"1B"},  // a note, not a code without a number
        {u"b", u"1B"},          {u"Bb", u"6B"},      {u"bbm", u"3A"},    {u"C♯", u"3B"},
        {u"C # major", u"3B"},  {u"D♭ maj", u"3B"},  {u"Dbmin", u"12A"}, {u"E\u00A0♭\tM I N O R", u"2A"},
        {u"b#", u"8B"},         {u"cb", u"1B"},      {u"e#m", u"4A"},    {u"fb", u"12B"},
        {u"G#", u"4B"},         {u"g♯m", u"1A"},     {u"H", {}},         {u"m", {}},
        {u"minor", {}},         {u"Amm", {}}, // one suffix is taken off
        {u"A minor major", {}}, {u"C##", {}},        {u"8 A", {}},       {u"13A", {}},
        {u"A dur", {}},         {u"o", {}},          {u"", {}},          {u" \n", {}},
    };
    expectCodes(kCases, &MusicalKey::camelotCode);
}

TEST(MusicalKey, KnowsAllNamesOfNotes)
{
    const QStringList names = QStringLiteral("c b#|c# db|d|d# eb|e fb|f e#|f# gb|g|g# ab|a|a# bb|b cb").split(u'|');
    for (int pitchClass = 0; pitchClass < 12; ++pitchClass) {
        for (const QString& name : names[pitchClass].split(u' ')) {
            EXPECT_EQ(MusicalKey::camelotCode(name), MusicalKey(pitchClass, MusicalKeyMode::Major).camelot());
            EXPECT_EQ(MusicalKey::camelotCode(name + u'm'), MusicalKey(pitchClass, MusicalKeyMode::Minor).camelot());
        }
    }
}

TEST(MusicalKey, FindsCodesInFileNames)
{
    static constexpr Case kCases[] = {
        {u"Track 8A - Mix.mp3", u"8A"},
        {u"Track 8A - Mix.anything", u"8A"},
        {u"Track 8A - Mix", u"8A"},
        {u"08a_128_Name.flac", u"8A"},
        {u"Name (12b).wav", u"12B"},
        {u"1A 2B.mp3", u"1A"},
        {u"18A 9B.mp3", u"9B"},
        {u"Track 18A.mp3", {}},
        {u"Track.8A", {}}, // an extension
        {u"Track.8A.mp3", u"8A"},
        {u".8A", u"8A"}, // no extension but a hidden file
        {u"Name8A.mp3", {}},
        {u"8Amp.mp3", {}},
        {u"e\u03018A.mp3", {}},           // a letter and its accent are one word with what follows
        {u"\U0001D4008A.mp3", {}},        // and so is a letter of another plane
        {u"\U0001F3B58A.mp3", u"8A"},     // a picture is none
        {u"\u2764\uFE0F8A.mp3", u"8A"},   // nor one with a sign of how to draw it
        {u"- \u25CC\u03018A.mp3", u"8A"}, // nor an accent over nothing
        {u"Am.mp3", {}},
        {u"", {}},
        {u".", {}},
    };
    expectCodes(kCases, &MusicalKey::embeddedCamelotCode);
}
