#pragma once

#include "core/model/Track.h"

#include <QHash>
#include <QObject>
#include <QSet>
#include <QStringList>

enum class StatusIcon;
class History;
class Notifications;
class Preferences;
class Selection;
class StatusLine;
class Workspace;

/// Membership of Favorites and Covers, and the filter of Favorites. What the user changes of the membership is one
/// step of undo. Ids that are not in the main list are ignored. Owned by the store. Thread: main.
class Favorites : public QObject {
    Q_OBJECT

public:
    /// The two flags of a row; a favourite that joins is in Covers as well.
    struct MembershipState {
        bool isFavorite = false;
        bool isInCoverWorkspace = false;
        bool operator==(const MembershipState&) const = default;
    };
    using MembershipStates = QHash<TrackID, MembershipState>;

    struct Dependencies {
        Workspace& workspace;
        Selection& selection;
        StatusLine& status;
        Notifications& notifications;
        Preferences& preferences;
        History& history;
    };

    explicit Favorites(const Dependencies& dependencies);

    /// Makes tracks favourites, which puts them in Covers too. \return how many joined.
    int addToFavorites(const QSet<TrackID>& ids);
    /// Takes favourites out of Favorites and of Covers. \param advancePlayback whether the player moves on from a
    /// removed track.
    void removeFromFavorites(const QSet<TrackID>& ids, bool advancePlayback);
    /// Each track flips on its own.
    void toggleFavorites(const QSet<TrackID>& ids);

    /// The present flags of these tracks, without those that are not in the list.
    MembershipStates favoriteMembershipStates(const QSet<TrackID>& ids) const;
    /// Sets both flags of these tracks at once: one assignment, one notification, no step of undo. Nothing happens
    /// where no flag differs.
    void applyFavoriteMembershipStates(const MembershipStates& states);

    /// The genre that Favorites are narrowed to; empty for all.
    QString favoriteGenreFilter() const;
    /// Narrows Favorites to a genre, which lifts the filter of untagged rows; an empty one shows all.
    void setFavoriteGenreFilter(const QString& genre);
    /// Whether Favorites show rows without a genre alone.
    bool favoriteOnlyUntagged() const;
    /// Turns that filter on, which lifts the one by genre, or off.
    void setFavoriteOnlyUntagged(bool value);
    /// The genres that occur among favourites, without empty ones, in localised order.
    QStringList favoriteGenreOptions() const;

Q_SIGNALS:
    /// Rows have left Favorites, and the player moves on. \param rows as they stood before, in display order.
    void rowsLeft(const QSet<TrackID>& ids, const QList<Track>& rows);

private:
    /// Those tracks whose flags differ from a target, as they are and as they become.
    struct Change {
        MembershipStates before;
        MembershipStates after;
    };
    Change plan(const MembershipStates& target) const;
    void change(const MembershipStates& target);
    void apply(const Change& change);
    void followInView(const Change& change);
    void showCount(const QString& message, qsizetype count, StatusIcon icon);
    void filterChanged();

    Dependencies m_dependencies;
};
