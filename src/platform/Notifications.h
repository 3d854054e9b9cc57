#pragma once

#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>
#include <QUuid>

#include <optional>

/// The program's events, one typed signal per name. One object, owned by the application and handed to whoever posts or
/// listens. Thread: main.
class Notifications : public QObject {
    Q_OBJECT

public:
    /// Direction of a keyboard step through a list.
    enum class Direction { Up, Down };
    Q_ENUM(Direction)

    using QObject::QObject;

Q_SIGNALS:
    void velmoraPlaybackDidChange();
    /// \param trackID the track that came to its end.
    void velmoraPlaybackDidFinish(const std::optional<QUuid>& trackID);
    void velmoraSettingsShouldResignFocus();
    void velmoraFocusFavoriteTrack(const QUuid& trackID);
    /// \param field "genre", "comment", "album", or empty when many fields may have changed (\p ids may then be empty).
    void velmoraTrackMetadataDidChange(const QString& field, const QSet<QUuid>& ids);
    void velmoraGenresDidChange();
    void velmoraFavoriteMembershipDidChange();
    void velmoraFavoriteGenreFilterDidChange();
    void velmoraBPMDidChange();
    void velmoraSelectAllConversionItems();
    void velmoraNavigateConversionItems(Notifications::Direction direction);
    void velmoraRemoveConversionItems();
    void velmoraNavigateDuplicateItems(Notifications::Direction direction);
    void velmoraChooseCoverArtwork();
    void velmoraApplyCoverArtwork();
    void velmoraLanguageDidChange();
    void velmoraRestartOnboarding();
    void velmoraRequestCleaner();
    void velmoraShowGenrePalette();
    void velmoraShowCommentPalette();
    void velmoraShowAlbumPalette();
    void velmoraFavoriteCopyCompleted(const QList<QUrl>& destinationFiles);
};
