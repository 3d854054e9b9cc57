#include "core/library/quicklists/QuickLists.h"

#include "platform/Localization.h"
#include "platform/Preferences.h"

namespace {

/// The items of a text that separates them by commas or line ends, trimmed, without empty ones.
QStringList items(const QString& raw)
{
    QStringList result;
    qsizetype begin = 0;
    const auto close = [&](qsizetype end) {
        const QString item = raw.sliced(begin, end - begin).trimmed();
        if (!item.isEmpty())
            result.append(item);
        begin = end + 1;
    };
    for (qsizetype place = 0; place < raw.size(); ++place) {
        if (raw[place] == u',' || raw[place] == u'\n' || raw[place] == u'\r')
            close(place);
    }
    close(raw.size());
    return result;
}

QString folded(const QString& text)
{
    return VelmoraLocalization::locale().toLower(text);
}

/// A line end inside a value would shift the ones behind it.
QString inOneLine(QString text)
{
    return text.replace(u'\r', u' ').replace(u'\n', u' ').trimmed();
}

QStringList withoutRepeats(const QStringList& list)
{
    QStringList kept;
    QSet<QString> seen;
    for (const QString& item : list) {
        if (!seen.contains(folded(item))) {
            seen.insert(folded(item));
            kept.append(item);
        }
    }
    return kept;
}

void storeIfDifferent(Preference<QString>& preference, const QString& text)
{
    if (preference.get() != text)
        preference.set(text);
}

} // namespace

QuickLists::QuickLists(Preferences& preferences)
    : m_preferences(preferences)
{
}

QStringList QuickLists::genres() const
{
    return items(m_preferences.genreList.get());
}

QStringList QuickLists::quickComments() const
{
    return items(m_preferences.quickCommentList.get());
}

QStringList QuickLists::albums() const
{
    return items(m_preferences.albumList.get());
}

QStringList QuickLists::quickGenreSlots() const
{
    QStringList entries = m_preferences.quickGenreSlots.get().remove(u'\r').split(u'\n', Qt::KeepEmptyParts);
    entries.resize(kSlotCount);
    return entries;
}

QStringList QuickLists::recentGenres() const
{
    return m_preferences.recentGenres.get().split(u'\n', Qt::SkipEmptyParts);
}

void QuickLists::setQuickGenre(const QString& genre, int index)
{
    if (index < 0 || index >= kSlotCount)
        return;
    QStringList entries = quickGenreSlots();
    entries[index] = inOneLine(genre);
    m_preferences.quickGenreSlots.set(entries.join(u'\n'));
}

void QuickLists::recordRecentGenre(const QString& text)
{
    const QString genre = inOneLine(text);
    if (genre.isEmpty())
        return;
    QStringList recent = recentGenres();
    recent.removeAll(genre);
    recent.prepend(genre);
    m_preferences.recentGenres.set(recent.first(std::min<qsizetype>(recent.size(), kRecentCount)).join(u'\n'));
}

void QuickLists::normalizeGenreList()
{
    const QStringList catalogue = withoutRepeats(genres());
    storeIfDifferent(m_preferences.genreList, catalogue.join(QStringLiteral(", ")));
    QHash<QString, QString> spelling;
    for (const QString& genre : catalogue)
        spelling.insert(folded(genre), genre);
    QStringList entries = quickGenreSlots();
    for (QString& slot : entries)
        slot = spelling.value(folded(slot.trimmed()), slot);
    storeIfDifferent(m_preferences.quickGenreSlots, entries.join(u'\n'));
}

void QuickLists::normalizeQuickCommentList()
{
    storeIfDifferent(m_preferences.quickCommentList, withoutRepeats(quickComments()).join(u'\n'));
}
