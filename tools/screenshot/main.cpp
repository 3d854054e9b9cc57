// Draws the window into a picture, for looking at it and for the documentation.

#include "DemoLibrary.h"

#include "app/ContentView.h"
#include "app/VelmoraApp.h"
#include "core/library/LibraryStore.h"
#include "core/library/favorites/Favorites.h"
#include "core/library/imports/Imports.h"
#include "core/library/selection/Selection.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "ui/MainWindow.h"
#include "ui/sections/SectionView.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QElapsedTimer>
#include <QFileInfo>

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
    QString out, section, theme, language, layout, size, state;
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
    option("scale", "scale factor of the screen", "1");
    option("state", "rows, empty, notice, error, ontop, or menu for the menu of a row alone", "rows");
    parser.addPositionalArgument(QStringLiteral("folder"), QStringLiteral("folders to show instead of made-up rows"));
    parser.addHelpOption();
    parser.process(arguments);
    const auto value = [&](const char* name) { return parser.value(QString::fromLatin1(name)); };
    return {value("out"),    value("section"), value("theme"), value("language"),
            value("layout"), value("size"),    value("state"), parser.positionalArguments()};
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
    preferences->defaultsMigrated.set(true); // nothing of the user's own settings in a picture
    auto app = std::make_unique<VelmoraApp>(std::move(preferences));
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
    LibraryStore& library = app.library();
    bool isListed = false;
    library.imports().importURLs(urls, [&](const Imports::Outcome&) { isListed = true; });
    pump(kReadLimitMilliseconds, [&] { return isListed && library.imports().metadataLoadOperationCount() == 0; });
    QSet<TrackID> starred;
    for (const Track& track : library.selection().tracks(LibraryTab::Playlist)) {
        if (!track.artworkData().isNull() && starred.size() < kStarred)
            starred.insert(track.id());
    }
    library.favorites().addToFavorites(starred, nullptr);
    if (tab != LibraryTab::Playlist && tab != LibraryTab::Favorites && tab != LibraryTab::Covers)
        app.contentView().receiveDroppedTracks(urls, tab);
    pump(kReadLimitMilliseconds, [&] { return library.imports().metadataLoadOperationCount() == 0; });
}

void inventRows(LibraryStore& library)
{
    Workspace& workspace = library.workspace();
    workspace.setTracks(DemoLibrary::tracks(40));
    workspace.setList(Track::MetadataDestination::Analysis, DemoLibrary::tracks(2));
    workspace.setList(Track::MetadataDestination::MusicalKey, DemoLibrary::tracks(1));
    QList<ConversionItem> jobs;
    for (int i = 0; i < 9; ++i) {
        ConversionItem job;
        job.url = workspace.tracks().at(i).url();
        jobs.append(job);
    }
    workspace.setConversionItems(jobs);
}

void selectSome(LibraryStore& library, LibraryTab tab)
{
    const QList<Track> rows = library.selection().tracks(tab);
    if (rows.size() > 4)
        library.selection().select({rows[2].id(), rows[3].id()}, rows[2].id());
}

} // namespace

int main(int argc, char** argv)
{
    for (int i = 1; i + 1 < argc; ++i) { // the scale has to be known before the application exists
        if (qstrcmp(argv[i], "--scale") == 0)
            qputenv("QT_SCALE_FACTOR", argv[i + 1]);
    }
    QApplication application(argc, argv);
    const Options options = parse(QApplication::arguments());
    const LibraryTab tab = sections().value(options.section, LibraryTab::Playlist);
    const std::unique_ptr<VelmoraApp> app = makeApp(options);
    app->contentView().activateTab(tab);
    Workspace& workspace = app->library().workspace();
    if (!options.folders.isEmpty())
        importFolders(*app, options.folders, tab);
    else if (options.state != QLatin1StringView("empty"))
        inventRows(app->library());
    selectSome(app->library(), tab);
    if (options.state == QLatin1StringView("notice"))
        app->library().favorites().removeFromCoverWorkspace(workspace.selectedIDs());
    if (options.state == QLatin1StringView("error"))
        workspace.setLastError(QString());
    pump(kSettleMilliseconds);
    QWidget* shown = &app->window();
    if (options.state == QLatin1StringView("menu")) {
        emit app->window().activeSection().contextMenuWanted(shown->geometry().center());
        shown = QApplication::activePopupWidget();
    }
    return shown && shown->grab().save(options.out) ? 0 : 1;
}
