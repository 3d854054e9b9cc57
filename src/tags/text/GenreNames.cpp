#include "tags/text/GenreNames.h"

#include "tags/text/TagText.h"

#include <taglib/id3v1genres.h>

#include <algorithm>

namespace GenreNames {

namespace {

/// The name behind a reference, empty if it is none.
QString nameOfReference(QStringView reference)
{
    if (reference == u"RX")
        return QStringLiteral("Remix");
    if (reference == u"CR")
        return QStringLiteral("Cover");
    const bool isNumber = !reference.isEmpty() && reference.size() <= 3 &&
                          std::ranges::all_of(reference, [](QChar c) { return c >= u'0' && c <= u'9'; });
    return isNumber ? fromNumber(reference.toInt()) : QString();
}

} // namespace

QString fromNumber(int number)
{
    const TagLib::String name = number >= 0 ? TagLib::ID3v1::genre(number) : TagLib::String();
    return QString::fromStdWString(name.toWString());
}

QString withReferences(const QString& genre)
{
    QString names; // separated by U+0000
    QStringView rest = genre;
    while (rest.startsWith(u'(') && !rest.startsWith(u"((")) {
        const qsizetype closing = rest.indexOf(u')');
        const QString name = closing > 0 ? nameOfReference(rest.sliced(1, closing - 1)) : QString();
        if (name.isEmpty())
            break;
        names += name + QChar::Null;
        rest = rest.sliced(closing + 1);
    }
    if (rest.isEmpty())
        return TagText::joined(names);
    return (rest.startsWith(u"((") ? rest.sliced(1) : rest).toString();
}

QString withNumbers(const QString& genre)
{
    if (const QString name = nameOfReference(genre); !name.isEmpty())
        return name;
    return genre.startsWith(u"((") || genre.startsWith(u"(CR)") || genre.startsWith(u"(RX)") ? genre
                                                                                             : withReferences(genre);
}

} // namespace GenreNames
