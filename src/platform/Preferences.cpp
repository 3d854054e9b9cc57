#include "platform/Preferences.h"

Preferences::Preferences(std::unique_ptr<PreferenceStore> store, QObject* parent)
    : QObject(parent)
    , m_store(std::move(store))
{
    m_store->onChange = [this](const QString& key) { Q_EMIT changed(key); };
    m_store->onSaved = [this](bool isSaved) { Q_EMIT saved(isSaved); };
    // In the order of HotkeyAction.
    const std::array<std::pair<QString, QString>, 14> defaults{{
        {QStringLiteral("hotkeySeekBack"), QStringLiteral("←")},
        {QStringLiteral("hotkeySeekForward"), QStringLiteral("→")},
        {QStringLiteral("hotkeyPreviousTrack"), QStringLiteral("↑")},
        {QStringLiteral("hotkeyNextTrack"), QStringLiteral("↓")},
        {QStringLiteral("hotkeyPlayPause"), QStringLiteral("Space")},
        {QStringLiteral("hotkeyVoiceControl"), QStringLiteral("V")},
        {QStringLiteral("hotkeyFavorite"), QStringLiteral("F")},
        {QStringLiteral("hotkeyRemove"), QStringLiteral("Delete")},
        {QStringLiteral("hotkeyTrash"), QStringLiteral("⌘Delete")},
        {QStringLiteral("hotkeyUndo"), QStringLiteral("⌘Z")},
        {QStringLiteral("hotkeyClean"), QStringLiteral("⌘B")},
        {QStringLiteral("hotkeyGenrePalette"), QStringLiteral("G")},
        {QStringLiteral("hotkeyCommentPalette"), QStringLiteral("C")},
        {QStringLiteral("hotkeyAlbumPalette"), QStringLiteral("A")},
    }};
    m_hotkeys.reserve(defaults.size());
    for (const auto& [key, primary] : defaults)
        m_hotkeys.emplace_back(*m_store, key, primary);
}

Preferences::~Preferences() = default;

const QStringList& Preferences::defaultQuickComments()
{
    static const QStringList kComments{QStringLiteral("preparty"), QStringLiteral("prime"),
                                       QStringLiteral("afterparty")};
    return kComments;
}

const QStringList& Preferences::defaultAlbums()
{
    static const QStringList kAlbums{QStringLiteral("#PRIMETIME"), QStringLiteral("#WARM UP"),
                                     QStringLiteral("#PREPARTY")};
    return kAlbums;
}

const QString& Preferences::defaultGenreList()
{
    static const QString kGenres = QStringLiteral(
        "Afro House, Afro Tech, Indie Dance, Pop, House, Melodic House & Techno, Tech House, Deep House, "
        "Progressive House, Trance, Techno, Drum & Bass, Hip-Hop, R&B, Disco, Funk");
    return kGenres;
}

const QString& Preferences::defaultQuickGenreSlots()
{
    static const QString kSlots =
        QStringLiteral("Afro House\nAfro Tech\nIndie Dance\nPop\nHouse\nTech House\nDeep House\nHip-Hop\nR&B");
    return kSlots;
}
