#pragma once

#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <QUuid>

#include <optional>

/// The program's events, one typed signal per name. One object, owned by the application and handed to all that post or
/// listen. Thread: main.
class Notifications : public QObject {
    Q_OBJECT

public:
    /// Direction of a keyboard step through a list.
    enum class Direction { Up, Down };
    Q_ENUM(Direction)

    using QObject::QObject;

Q_SIGNALS:
    /// Another track, started, paused or ended. Said by the player.
    void velmoraPlaybackDidChange();
    /// \param trackID the track that came to its end.
    void velmoraPlaybackDidFinish(const std::optional<QUuid>& trackID);
    /// Fields of the settings give the keyboard back.
    void velmoraSettingsShouldResignFocus();
    /// Bring this row of the favourites into view.
    void velmoraFocusFavoriteTrack(const QUuid& trackID);
    /// \param field "genre", "comment", "album", or empty when many fields may have changed (\p ids may then be empty).
    void velmoraTrackMetadataDidChange(const QString& field, const QSet<QUuid>& ids);
    /// The list of genres in the settings was changed.
    void velmoraGenresDidChange();
    /// Rows became favourites or ceased to be.
    void velmoraFavoriteMembershipDidChange();
    /// The genre by which the favourites are narrowed, or their filter of untagged rows.
    void velmoraFavoriteGenreFilterDidChange();
    /// Tempos were estimated or chosen; at most ten times a second.
    void velmoraBPMDidChange();
    // Keys that the converter and the duplicates answer in lists of their own.
    void velmoraSelectAllConversionItems();
    /// A step of the focus in the converter's list.
    void velmoraNavigateConversionItems(Notifications::Direction direction);
    /// The selected jobs shall leave the converter's queue.
    void velmoraRemoveConversionItems();
    /// A step of the focus in the list of duplicates.
    void velmoraNavigateDuplicateItems(Notifications::Direction direction);
    // Menus and keys of the covers.
    void velmoraChooseCoverArtwork();
    /// The chosen picture goes to the rows that are selected in Covers.
    void velmoraApplyCoverArtwork();
    /// Texts are asked for again: VelmoraLocalization answers in the new language already.
    void velmoraLanguageDidChange();
    /// The user asked for the introduction of the sections once more.
    void velmoraRestartOnboarding();
    // What is opened by a key wherever the keyboard stands.
    void velmoraRequestCleaner();
    void velmoraShowGenrePalette();
    void velmoraShowCommentPalette();
    void velmoraShowAlbumPalette();
    /// An export of favourites has ended. \param destinationFiles the copies.
    void velmoraFavoriteCopyCompleted(const QList<QUrl>& destinationFiles);
};
