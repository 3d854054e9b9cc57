// Draws the window into a picture, for looking at it and for the documentation.

#include "DemoAudio.h"
#include "DemoEnvelopes.h"
#include "DemoKeys.h"
#include "DemoLibrary.h"

#include "app/AppPaths.h"
#include "app/ContentView.h"
#include "app/VelmoraApp.h"
#include "async/SystemClock.h"
#include "async/TaskSlot.h"
#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/files/FileLocks.h"
#include "core/library/imports/Imports.h"
#include "core/library/removal/Removal.h"
#include "core/library/selection/Selection.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tempo/TempoChoices.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "playback/AudioPlayer.h"
#include "ui/controls/ThemeButton.h"
#include "ui/covers/CoverAssignment.h"
#include "ui/inspector/Inspector.h"
#include "ui/inspector/InspectorField.h"
#include "ui/inspector/InspectorFields.h"
#include "ui/player/EnvelopeArea.h"
#include "ui/player/PlayerBar.h"
#include "ui/player/VolumeControl.h"
#include "ui/sections/SectionView.h"
#include "ui/window/MainWindow.h"
#include "ui/window/Sidebar.h"
#include "ui/window/WaveformMenu.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QMouseEvent>
#include <QTemporaryDir>

namespace {

constexpr int kSettleMilliseconds = 900; // covers, fonts and delayed counts
constexpr int kReadLimitMilliseconds = 60'000;
constexpr int kStarred = 8; // rows that get a star, so that Favorites and Covers have something to show

const QHash<QString, LibraryTab>& sections()
{
    static const QHash<QString, LibraryTab> kSections{
        {QStringLiteral("playlist"), LibraryTab::Playlist},     {QStringLiteral("favorites"), LibraryTab::Favorites},
        {QStringLiteral("covers"), LibraryTab::Covers},         {QStringLiteral("converter"), LibraryTab::Converter},
        {QStringLiteral("analysis"), LibraryTab::Analysis},     {QStringLiteral("key"), LibraryTab::MusicalKey},
        {QStringLiteral("duplicates"), LibraryTab::Duplicates},
    };
    return kSections;
}

struct Options {
    QString out, section, theme, language, layout, size, state, drawer, colour, height, coverImage, inspector, select;
    bool asks;
    QStringList folders;
};

Options parse(const QStringList& arguments)
{
    QCommandLineParser parser;
    const auto option = [&](const char* name, const char* help, const char* value) {
        parser.addOption({QString::fromLatin1(name), QString::fromLatin1(help), QStringLiteral("value"),
                          QString::fromLatin1(value)});
    };
    option("out", "picture to write", "window.png");
    option("section", "playlist, favorites, covers, converter, analysis, key or duplicates", "playlist");
    option("theme", "dark or light", "dark");
    option("language", "ru or en", "ru");
    option("layout", "full or compact", "full");
    option("size", "WxH in device-independent pixels", "");
    option("drawer", "bars, logarithmicBars, line, curve or dots", "bars");
    option("colour", "preset of the waveform's colours", "white");
    option("height", "of the waveform", "42");
    option("cover-image", "picture file to choose in Covers", "");
    parser.addOption({QStringLiteral("ask"), QStringLiteral("the question of what saves keep")});
    option("inspector", "closed, open, edited, pinned or writing", "closed");
    option("select", "FIRST+COUNT of the rows", "2+2");
    option("scale", "scale factor of the screen", "1");
    option("state",
           "rows, empty, notice, error, ontop, playing, paused, loading, writing, outputs, hover, volume, keys or "
           "waiting-keys for results of the key section, or menu for "
           "the menu of "
           "a row alone, settings for that of the waveforms",
           "rows");
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("folders to show instead of made-up rows"));
    parser.addHelpOption();
    parser.process(arguments);
    const auto value = [&](const char* name) { return parser.value(QString::fromLatin1(name)); };
    return {value("out"),
            value("section"),
            value("theme"),
            value("language"),
            value("layout"),
            value("size"),
            value("state"),
            value("drawer"),
            value("colour"),
            value("height"),
            value("cover-image"),
            value("inspector"),
            value("select"),
            parser.isSet(QStringLiteral("ask")),
            parser.positionalArguments()};
}

void pump(
    int milliseconds, const std::function<bool()>& isDone = [] { return false; })
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds && !isDone())
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
}

std::unique_ptr<VelmoraApp> makeApp(const Options& options)
{
    auto preferences = std::make_unique<Preferences>(std::make_unique<MemoryPreferenceStore>());
    preferences->appLanguage.set(options.language);
    preferences->appAppearance.set(options.theme);
    preferences->workspaceLayout.set(options.layout);
    preferences->dashboardPlayerOnTop.set(options.state == QLatin1StringView("ontop"));
    preferences->waveformDrawer.set(options.drawer);
    preferences->waveformColorPreset.set(options.colour);
    preferences->waveformHeight.set(options.height.toDouble());
    preferences->inspectorVisible.set(options.inspector != QLatin1StringView("closed"));
    preferences->defaultsMigrated.set(true); // nothing of the user's own settings in a picture
    auto app = std::make_unique<VelmoraApp>(std::move(preferences), std::make_unique<DemoAudio>());
    app->open({});
    const QStringList size = options.size.split(u'x');
    if (size.size() == 2)
        app->window().resize(size[0].toInt(), size[1].toInt());
    return app;
}

/// Real files by the road that a drop takes.
void importFolders(VelmoraApp& app, const QStringList& folders, LibraryTab tab)
{
    QList<QUrl> urls;
    for (const QString& folder : folders)
        urls.append(FileURL::fromPath(QFileInfo(folder).absoluteFilePath()));
    LibraryStore& library = app.store();
    bool isListed = false;
    library.imports().importURLs(urls, [&](const Imports::Outcome&) { isListed = true; });
    pump(kReadLimitMilliseconds, [&] { return isListed && library.imports().metadataLoadOperationCount() == 0; });
    QSet<TrackID> starred;
    for (const Track& track : library.selection().tracks(LibraryTab::Playlist)) {
        if (!track.artworkData().isNull() && starred.size() < kStarred)
            starred.insert(track.id());
    }
    library.favorites().addToFavorites(starred);
    if (tab != LibraryTab::Playlist && tab != LibraryTab::Favorites && tab != LibraryTab::Covers)
        app.contentView().receiveDroppedTracks(urls, tab);
    const bool waitsForRows = tab == LibraryTab::MusicalKey;
    pump(kReadLimitMilliseconds, [&] {
        const bool hasRows = !waitsForRows || !library.workspace().keyAnalysisTracks().isEmpty();
        return hasRows && library.imports().metadataLoadOperationCount() == 0;
    });
}

/// Estimates for the rows whose tag tells no tempo.
void inventTempos(LibraryStore& library)
{
    int bpm = 118;
    for (const Track& track : library.workspace().tracks().rows()) {
        if (track.tags().bpm.isEmpty() && bpm < 140)
            library.tempoChoices().setTempo({track.id()}, bpm += 3);
    }
}

void inventRows(LibraryStore& library)
{
    const QString music = QDir::homePath() + QStringLiteral("/Music");
    Workspace& workspace = library.workspace();
    workspace.setTracks(DemoLibrary::tracks(40, music));
    DemoEnvelopes::write(workspace.tracks().rows(), AppPaths::waveformFolder());
    workspace.setList(Track::MetadataDestination::Analysis, DemoLibrary::tracks(2, music));
    workspace.setList(Track::MetadataDestination::MusicalKey, DemoLibrary::tracks(1, music));
    QList<ConversionItem> jobs;
    for (int i = 0; i < 9; ++i) {
        ConversionItem job;
        job.url = workspace.tracks().at(i).url();
        jobs.append(job);
    }
    workspace.setConversionItems(jobs);
    inventTempos(library);
}

void selectSome(LibraryStore& library, LibraryTab tab, const QString& range)
{
    const QList<Track> rows = library.selection().tracks(tab);
    const int first = range.section(u'+', 0, 0).toInt();
    const int count = range.section(u'+', 1, 1).toInt();
    if (rows.size() < first + count || count == 0)
        return;
    QSet<TrackID> ids;
    for (const Track& track : rows.mid(first, count))
        ids.insert(track.id());
    library.selection().select(ids, rows[first].id());
}

/// Puts the inspector into a state. \param tab the section shown.
void prepareInspector(VelmoraApp& app, LibraryTab tab, const QString& state)
{
    LibraryStore& library = app.store();
    const QList<Track> rows = library.selection().tracks(tab);
    pump(kSettleMilliseconds);
    const auto field = [&](TagField tag) -> InspectorField& { return app.window().inspector().fields().field(tag); };
    if (state == QLatin1StringView("writing") && !rows.isEmpty())
        library.workspace().setArtworkWritingIDs(library.workspace().activeSelection());
    if (state != QLatin1StringView("edited") && state != QLatin1StringView("pinned"))
        return;
    emit field(TagField::Album).edited(QStringLiteral("#CLOSING"));
    emit field(TagField::Comment).edited(QString());
    field(TagField::Artist).editor().setFocus();
    if (state == QLatin1StringView("pinned"))
        library.selection().select({rows.first().id()}, rows.first().id());
}

/// The focused row plays, or stands in its midst.
void playSome(VelmoraApp& app, bool plays, int row)
{
    const QList<Track> rows = app.store().selection().visibleTracks();
    if (rows.size() <= row)
        return;
    app.player().play(rows[row]);
    pump(kReadLimitMilliseconds, [&] { return app.player().isPlaying(); });
    app.player().scheduleSeek(134, false);
    pump(kSettleMilliseconds);
    if (!plays)
        app.player().toggle();
}

void hoverRow(MainWindow& window, int row)
{
    QAbstractItemView& list = window.activeSection().list();
    const QPointF place = list.visualRect(list.model()->index(row, 1)).center();
    QMouseEvent move(QEvent::MouseMove, place, list.viewport()->mapToGlobal(place), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(list.viewport(), &move);
    auto* envelope = window.findChild<EnvelopeArea*>();
    const QPointF middle(envelope->width() * 0.7, envelope->height() / 2.0);
    QMouseEvent over(QEvent::MouseMove, middle, envelope->mapToGlobal(middle), Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(envelope, &over);
}

void chooseCover(MainWindow& window, const QString& path)
{
    auto* covers = qobject_cast<CoverAssignment*>(window.activeSection().parts());
    if (!covers || path.isEmpty())
        return;
    QMimeData picture;
    picture.setUrls({FileURL::fromPath(QFileInfo(path).absoluteFilePath())});
    covers->take(picture);
    pump(kReadLimitMilliseconds, [&] { return covers->choice().picture().has_value(); });
}

async::Task<> holdFile(FileLocks& locks, QUrl url, async::Clock& clock, std::stop_token stop)
{
    const FileLocks::HeldPath held = co_await locks.hold(url, stop);
    co_await clock.sleep(async::seconds(kReadLimitMilliseconds), stop);
}

/// A batch of writes that waits for one of its files, which another writer holds, and covers under way.
void writeWithoutEnd(LibraryStore& library, async::Clock& clock, async::TaskSlot& holder)
{
    constexpr int kHeldRow = 12;
    library.preferences().keepsOtherTagEntriesAsked.set(true);
    Workspace& workspace = library.workspace();
    TagSaver& saver = library.tagWriting().saver();
    const QUrl heldURL = workspace.tracks().at(kHeldRow).url();
    holder.start([&locks = library.fileLocks(), heldURL, &clock](std::stop_token stop) {
        return holdFile(locks, heldURL, clock, std::move(stop));
    });
    QList<TagSaver::Item> items;
    for (const Track& track : workspace.tracks().rows())
        items.append(TagSaver::Item{track});
    saver.writeBatch(items);
    workspace.setArtworkWritingIDs({workspace.tracks().at(0).id(), workspace.tracks().at(4).id()});
    pump(kSettleMilliseconds);
}

void openWaveformMenu(MainWindow& window)
{
    emit window.sidebar().settingsWanted(window.geometry().center());
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    for (QAction* each : menu->actions()) {
        if (auto* waveforms = qobject_cast<WaveformMenu*>(each->menu()))
            waveforms->popup(window.geometry().center());
    }
    pump(kSettleMilliseconds);
}

/// The window, or the menu that the state asks for.
QWidget* prepare(VelmoraApp& app, const QString& state)
{
    const auto is = [&](const char* name) { return state == QLatin1StringView(name); };
    if (is("notice"))
        app.store().removal().removeFromCoverWorkspace(app.store().workspace().selectedIDs());
    if (is("error"))
        app.store().workspace().setLastError(QString());
    if (is("playing") || is("paused") || is("hover") || is("ontop") || is("loading"))
        playSome(app, !is("paused"), is("loading") ? DemoEnvelopes::endlessRow() : 2);
    pump(kSettleMilliseconds);
    if (is("hover"))
        hoverRow(app.window(), 5);
    if (is("volume")) // where there is no room for the slider
        app.window().findChild<VolumeControl*>()->findChild<ThemeButton*>()->setFocus(Qt::TabFocusReason);
    if (is("menu"))
        emit app.window().activeSection().contextMenuWanted(app.window().geometry().center());
    if (is("outputs"))
        app.window().findChild<PlayerBar*>()->openOutputs();
    if (is("settings"))
        openWaveformMenu(app.window());
    return is("menu") || is("outputs") || is("settings") ? QApplication::activePopupWidget() : &app.window();
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i + 1 < argc; ++i) { // the scale has to be known before the application exists
        if (qstrcmp(argv[i], "--scale") == 0)
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
    }
    // Made-up files and what the program keeps of them stand in a home of their own.
    const QTemporaryDir home;
    qputenv("HOME", QFile::encodeName(home.path()));
    qputenv("XDG_CACHE_HOME", QFile::encodeName(home.filePath(QStringLiteral("cache"))));
    QApplication application(argc, argv);
    const Options options = parse(QApplication::arguments());
    const LibraryTab tab = sections().value(options.section, LibraryTab::Playlist);
    const std::unique_ptr<VelmoraApp> app = makeApp(options);
    app->contentView().activateTab(tab);
    if (!options.folders.isEmpty())
        importFolders(*app, options.folders, tab);
    else if (options.state != QLatin1StringView("empty"))
        inventRows(app->store());
    if (options.state.endsWith(QLatin1StringView("keys")))
        DemoKeys::fill(app->store(), options.state.startsWith(QLatin1StringView("waiting")));
    selectSome(app->store(), tab, options.select);
    prepareInspector(*app, tab, options.inspector);
    chooseCover(app->window(), options.coverImage);
    async::SystemClock clock;
    async::TaskSlot holder;
    if (options.state == QLatin1StringView("writing"))
        writeWithoutEnd(app->store(), clock, holder);
    if (options.asks)
        app->store().workspace().setAskingWhatSavesKeep(true);
    QWidget* shown = prepare(*app, options.state);
    return shown && shown->grab().save(options.out) ? 0 : 1;
}
