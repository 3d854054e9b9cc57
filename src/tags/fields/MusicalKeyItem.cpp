#include "tags/fields/MusicalKeyItem.h"

#include <algorithm>
#include <array>

namespace MusicalKeyItem {

namespace {

QString lettersOf(const QString& text)
{
    QString letters;
    std::ranges::copy_if(text, std::back_inserter(letters), [](QChar c) { return c.isLetter(); });
    return letters;
}

} // namespace

std::optional<QString> value(const MetadataItem& item)
{
    const std::array names{lettersOf(item.identifier.toUpper()), lettersOf(item.key.toUpper())};
    const auto anyEndsWith = [&](QLatin1StringView ending) {
        return std::ranges::any_of(names, [&](const QString& name) { return name.endsWith(ending); });
    };
    const bool isKeyField = anyEndsWith(QLatin1StringView("TKEY")) || anyEndsWith(QLatin1StringView("INITIALKEY")) ||
                            anyEndsWith(QLatin1StringView("IKEY"));
    if (!isKeyField) {
        if (!anyEndsWith(QLatin1StringView("TXXX")) || !item.extraDescription)
            return std::nullopt;
        const QString description = lettersOf(item.extraDescription->toLower());
        if (description != QLatin1StringView("initialkey") && description != QLatin1StringView("musicalkey"))
            return std::nullopt;
    }
    const QString text = item.stringValue.value_or(QString()).trimmed();
    return text.isEmpty() ? std::nullopt : std::optional(text);
}

} // namespace MusicalKeyItem
