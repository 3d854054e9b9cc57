#pragma once

#include "platform/Preference.h"

#include <QObject>
#include <QStringList>

#include <array>

/// A key of the keyboard with its two assignable shortcuts, as canonical texts; empty means unassigned.
struct HotkeyPreference {
    /// \param key of the first shortcut; the second has the same with "Secondary" behind it
    HotkeyPreference(PreferenceStore& store, const QString& key, const QString& primaryDefault)
        : primary(store, key, primaryDefault)
        , secondary(store, key + QStringLiteral("Secondary"), QString())
    {
    }
    Preference<QString> primary;
    Preference<QString> secondary;
};

/// Actions that have hotkeys, in the order of the settings.
enum class HotkeyAction {
    SeekBack,
    SeekForward,
    PreviousTrack,
    NextTrack,
    PlayPause,
    VoiceControl,
    Favorite,
    Remove,
    Trash,
    Undo,
    Clean,
    GenrePalette,
    CommentPalette,
    AlbumPalette
};

/// Every setting of the program: one typed value per key with its default beside it, written at once on every change.
/// Values of parts that are still to come have no reader yet; they hold what older versions stored. Thread: main.
class Preferences : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<PreferenceStore> m_store; // before the values, which refer to it

public:
    /// \param store where values live: SettingsFile in the program, MemoryPreferenceStore in tests.
    explicit Preferences(std::unique_ptr<PreferenceStore> store, QObject* parent = nullptr);
    ~Preferences() override;

    /// What the lists of QuickLists hold before the user changes them, in the forms in which they are stored.
    static const QStringList& defaultQuickComments();
    static const QStringList& defaultAlbums();
    static const QString& defaultGenreList();
    static const QString& defaultQuickGenreSlots();

    // The window.
    /// See AppLanguage.
    Preference<QString> appLanguage{*m_store, QStringLiteral("appLanguage"), QStringLiteral("ru")};
    /// "light", or dark for any other value.
    Preference<QString> appAppearance{*m_store, QStringLiteral("appAppearance"), QStringLiteral("dark")};
    /// See WorkspaceLayout.
    Preference<QString> workspaceLayout{*m_store, QStringLiteral("workspaceLayout"), QStringLiteral("full")};
    /// Whether the sidebar shows icons alone: one value for each layout.
    Preference<bool> sidebarCollapsed{*m_store, QStringLiteral("sidebarCollapsed"), false};
    Preference<bool> compactSidebarCollapsed{*m_store, QStringLiteral("compactSidebarCollapsed"), true};
    /// Whether the player stands above the sections instead of below them.
    Preference<bool> dashboardPlayerOnTop{*m_store, QStringLiteral("dashboardPlayerOnTop"), false};
    Preference<double> tableDensity{*m_store, QStringLiteral("tableDensity"), 1.0}; ///< row scale of the lists
    /// As the toolkit saves a window's place; empty before the first run's end.
    Preference<QByteArray> windowGeometry{*m_store, QStringLiteral("velmora.windowGeometry.v1"), QByteArray()};

    // Lists and filters.
    Preference<QString> renameFilters{*m_store, QStringLiteral("renameFilters"), QString()};
    Preference<QString> titleFilters{*m_store, QStringLiteral("titleFilters"), QString()};
    /// The genre that Favorites are narrowed to, empty for all; or to rows without one. Favorites keeps one of the
    /// two at most.
    Preference<QString> favoriteGenreFilter{*m_store, QStringLiteral("favoriteGenreFilter"), QString()};
    Preference<bool> favoriteOnlyUntagged{*m_store, QStringLiteral("favoriteOnlyUntagged"), false};
    /// Raw values of TrackSortField and TrackSortDirection.
    Preference<QString> playlistSortField{*m_store, QStringLiteral("playlistSortField"), QStringLiteral("original")};
    Preference<QString> playlistSortDirection{*m_store, QStringLiteral("playlistSortDirection"),
                                              QStringLiteral("descending")};
    Preference<QString> favoriteSortField{*m_store, QStringLiteral("favoriteSortField"), QStringLiteral("original")};
    Preference<QString> favoriteSortDirection{*m_store, QStringLiteral("favoriteSortDirection"),
                                              QStringLiteral("ascending")};
    /// Where the playlist is scrolled to, in pixels from its top, and the row that stood first there: a UUID in upper
    /// case.
    Preference<double> playlistScrollOffset{*m_store, QStringLiteral("velmora.playlistScrollOffset.v1"), 0.0};
    Preference<QString> playlistScrollAnchorTrackID{*m_store, QStringLiteral("velmora.playlistScrollAnchorTrackID.v1"),
                                                    QString()};

    /// The workspace as older versions kept it, in the session's form; read, never written.
    Preference<QByteArray> legacyWorkspaceSession{*m_store, QStringLiteral("velmora.workspaceSession.v1"),
                                                  QByteArray()};

    // Player and waveform.
    Preference<double> playerVolume{*m_store, QStringLiteral("velmora.playerVolume"), 0.8}; ///< gain, 0 to 1
    /// AudioDevice::id; empty for the system's default.
    Preference<QString> audioOutputDevice{*m_store, QStringLiteral("velmora.audioOutputDevice.v1"), QString()};
    Preference<double> seekStep{*m_store, QStringLiteral("seekStep"), 15.0};             ///< seconds
    Preference<double> waveformHeight{*m_store, QStringLiteral("waveformHeight"), 42.0}; ///< points
    /// A raw value of WaveformDrawer.
    Preference<QString> waveformDrawer{*m_store, QStringLiteral("velmora.waveformDrawer.v1"), QStringLiteral("bars")};
    /// One of WaveformColours::presets(); "custom" takes the colour below.
    Preference<QString> waveformColorPreset{*m_store, QStringLiteral("waveformColorPreset"), QStringLiteral("white")};
    /// The user's own colour, each part from 0 to 1.
    Preference<double> waveformCustomRed{*m_store, QStringLiteral("waveformCustomRed"), 1.0};
    Preference<double> waveformCustomGreen{*m_store, QStringLiteral("waveformCustomGreen"), 1.0};
    Preference<double> waveformCustomBlue{*m_store, QStringLiteral("waveformCustomBlue"), 1.0};
    /// A raw value of WaveformScrollAction.
    Preference<QString> waveformScrollAction{*m_store, QStringLiteral("waveformScrollAction"),
                                             QStringLiteral("volume")};

    // Analysis, conversion, export.
    Preference<int> converterBitrate{*m_store, QStringLiteral("converterBitrate"), 320}; ///< kbit/s
    Preference<int> analysisDFTWindow{*m_store, QStringLiteral("analysisDFTWindow"), 4096};
    Preference<double> analysisDensityRange{*m_store, QStringLiteral("analysisDensityRange"), 100.0};
    Preference<bool> exportFavoritesByGenre{*m_store, QStringLiteral("exportFavoritesByGenre"), false};
    Preference<bool> cleanerAskBeforeApplying{*m_store, QStringLiteral("cleanerAskBeforeApplying"), true};
    /// Whether ratings may be sorted by; turning it off ends a sort by rating.
    Preference<bool> playlistPopularityEnabled{*m_store, QStringLiteral("playlistPopularityEnabled"), true};
    Preference<QString> voiceInputDeviceUID{*m_store, QStringLiteral("voiceInputDeviceUID"), QString()};
    Preference<QString> lastUpdatePromptVersion{*m_store, QStringLiteral("lastUpdatePromptVersion"), QString()};
    Preference<double> lastUpdatePromptDate{*m_store, QStringLiteral("lastUpdatePromptDate"),
                                            0.0}; ///< seconds since 1970
    /// Whether text in Latin-1 fields that is plainly Windows-1251 is shown as Cyrillic.
    Preference<bool> readsWindows1251Tags{*m_store, QStringLiteral("velmora.readsWindows1251Tags.v1"), true};
    /// Whether a save keeps the picture and all other entries of a file's tags; and whether the user was asked.
    Preference<bool> keepsOtherTagEntries{*m_store, QStringLiteral("velmora.keepsOtherTagEntries.v1"), false};
    Preference<bool> keepsOtherTagEntriesAsked{*m_store, QStringLiteral("velmora.keepsOtherTagEntriesAsked.v1"), false};
    /// Whether the panel with the tags is open.
    Preference<bool> inspectorVisible{*m_store, QStringLiteral("velmora.inspectorVisible.v1"), false};

    // Quick lists, as raw texts; QuickLists parses them.
    /// Items parted by commas or line ends.
    Preference<QString> genreList{*m_store, QStringLiteral("genreList"), defaultGenreList()};
    /// One a line, free places as empty lines; and the genres used lately, the last one first.
    Preference<QString> quickGenreSlots{*m_store, QStringLiteral("quickGenreSlots"), defaultQuickGenreSlots()};
    Preference<QString> recentGenres{*m_store, QStringLiteral("recentGenres"), QString()};
    Preference<QString> quickCommentList{*m_store, QStringLiteral("quickCommentList"),
                                         defaultQuickComments().join(u'\n')};
    Preference<QString> albumList{*m_store, QStringLiteral("albumList"), defaultAlbums().join(u'\n')};

    // Onboarding and migration.
    /// How far the introduction of the sections has come; removed to begin it again.
    Preference<QString> sectionOnboardingSeen{*m_store, QStringLiteral("sectionOnboarding.seen.v1"), QString()};
    Preference<QString> sectionOnboardingSteps{*m_store, QStringLiteral("sectionOnboarding.steps.v1"), QString()};
    Preference<bool> sectionOnboardingSkipped{*m_store, QStringLiteral("sectionOnboarding.skipped.v1"), false};
    /// Whether the settings of the program's former name were taken over.
    Preference<bool> defaultsMigrated{*m_store, QStringLiteral("velmora.migration.defaults-v1"), false};

    /// The two shortcuts of an action.
    HotkeyPreference& hotkey(HotkeyAction action) { return m_hotkeys[static_cast<size_t>(action)]; }
    /// For keys that have no member here, e.g. of older versions.
    PreferenceStore& store() { return *m_store; }

Q_SIGNALS:
    /// After the value of a key was written or removed.
    void changed(const QString& key);
    /// After a try to bring changes to the disk. \param isSaved whether it took them.
    void saved(bool isSaved);

private:
    std::vector<HotkeyPreference> m_hotkeys;
};
