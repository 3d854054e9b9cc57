#pragma once

#include <QString>
#include <QStringList>

class Preferences;

/// The small lists that genres, comments and albums are picked from. Stored as raw texts in the preferences. Thread:
/// main.
class QuickLists {
public:
    /// Free places count too: see quickGenreSlots().
    static constexpr int kSlotCount = 9;
    /// Genres that recentGenres() holds at most; the oldest go.
    static constexpr int kRecentCount = 5;

    explicit QuickLists(Preferences& preferences);

    /// The catalogue of genres in the user's order, trimmed, without empty ones; commas and line ends part them.
    QStringList genres() const;
    /// Comments to pick from, read in the same way.
    QStringList quickComments() const;
    /// Albums to pick from, read in the same way.
    QStringList albums() const;
    /// Exactly nine; a free slot is an empty string and keeps its place.
    QStringList quickGenreSlots() const;
    /// Genres that were assigned lately, the last one first.
    QStringList recentGenres() const;

    /// Puts the trimmed genre on a slot; an index out of range does nothing.
    void setQuickGenre(const QString& genre, int index);
    /// Moves a genre to the front of the recent ones; an empty one is not remembered.
    void recordRecentGenre(const QString& genre);
    /// Drops repeats from the genre catalogue, compared in lower case, and gives the quick slots the catalogue's
    /// spelling.
    void normalizeGenreList();
    /// Drops repeats from the comments, compared in lower case.
    void normalizeQuickCommentList();

private:
    Preferences& m_preferences;
};
