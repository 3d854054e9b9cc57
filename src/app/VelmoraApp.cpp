#include "app/VelmoraApp.h"

#include "WaveformScrubber/WaveformCache.h"
#include "analysis/decoding/TemporarySweep.h"
#include "app/AppPaths.h"
#include "app/ContentView.h"
#include "app/DefaultsMigration.h"
#include "app/EnvelopeUpkeep.h"
#include "app/LibraryAnalyzers.h"
#include "app/LibraryEnvelopes.h"
#include "app/LibraryPlayer.h"
#include "app/LibraryTagFiles.h"
#include "app/LibraryTagReader.h"
#include "app/LibraryTrashCan.h"
#include "app/Lifecycle.h"
#include "async/MainQueue.h"
#include "async/SystemClock.h"
#include "async/ThreadExecutor.h"
#include "core/library/LibraryServices.h"
#include "core/library/LibraryStore.h"
#include "core/library/artwork/ArtworkImage.h"
#include "core/library/playback/Playback.h"
#include "core/library/session/Session.h"
#include "core/library/session/WorkspaceSessionStorage.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/EditJournal.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/waveforms/Waveforms.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Localization.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "platform/TerminationSignals.h"
#include "platform/audio/AudioFilePlayer.h"
#include "platform/power/ResourceWatch.h"
#include "playback/AudioPlayer.h"
#include "tags/AudioMetadataLoader.h"
#include "tags/keeping/TagInventoryReader.h"
#include "ui/dialogs/OpenPanel.h"
#include "ui/waveform/RowWaveforms.h"
#include "ui/window/MainWindow.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QIcon>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTextEdit>

#include <atomic>

namespace {

constexpr double kSoundWarningDuration = 5; // seconds

/// Lets a text field commit what is being typed. Lists and buttons keep the focus: the keyboard goes on from there.
void endEditing()
{
    QWidget* const focused = QApplication::focusWidget();
    if (qobject_cast<QLineEdit*>(focused) || qobject_cast<QTextEdit*>(focused) ||
        qobject_cast<QPlainTextEdit*>(focused) || qobject_cast<QAbstractSpinBox*>(focused))
        focused->clearFocus();
}

} // namespace

VelmoraApp::VelmoraApp(std::unique_ptr<Preferences> preferences, std::unique_ptr<AudioSystem> audio,
                       std::unique_ptr<WorkspaceSessionStorage> storage)
    : m_preferences(std::move(preferences))
    , m_audio(std::move(audio))
    , m_sessionStorage(std::move(storage))
{
    const SettingsFile legacy(AppPaths::legacyPreferencesFile());
    DefaultsMigration::migrateLegacyDefaults(legacy, *m_preferences);
    VelmoraLocalization::setLanguage(appLanguageFromRawValue(m_preferences->appLanguage.get()));
    m_toolkitTexts.setLanguage(VelmoraLocalization::language());
    loadIcon();
}

VelmoraApp::VelmoraApp(std::unique_ptr<Preferences> preferences, std::unique_ptr<AudioSystem> audio)
    : VelmoraApp(std::move(preferences), std::move(audio), nullptr)
{
}

VelmoraApp::~VelmoraApp()
{
    QObject::disconnect(qApp, nullptr, this, nullptr);
    if (m_lifecycle)
        m_lifecycle->terminate();
    m_sweep.cancel();
    m_imageRead.cancel();
    m_window.reset();
    m_contentView.reset();
    if (m_library)
        m_library->playback().setPlayer(nullptr);
    m_libraryPlayer.reset();
    m_player.reset(); // before the library, which it tells its state
    m_library.reset();
    m_envelopes.reset();
    m_waveforms.reset();
    m_resourceWatch.reset();
    async::MainQueue::drain(); // tasks that were stopped just now come to their end while the clock is there
    m_executor.reset();        // waits for the file that is being written
    async::MainQueue::drain();
}

void VelmoraApp::loadIcon()
{
    const QIcon icon(QStringLiteral(":/icons/velmora.svg"));
    if (!icon.isNull())
        QApplication::setWindowIcon(icon);
}

void VelmoraApp::open(const QList<QUrl>& files)
{
    buildStore();
    m_library->session().restore(); // reads while the window is built
    buildPlayer();
    buildWindow();
    watchLifecycle();
    m_window->show();
    m_sweep.start([this](std::stop_token stop) { return sweepTemporaryFiles(std::move(stop)); });
    m_contentView->receiveDroppedTracks(files, LibraryTab::Playlist);
}

void VelmoraApp::openAgain(const QList<QUrl>& files)
{
    m_contentView->receiveDroppedTracks(files, LibraryTab::Playlist);
    m_window->setWindowState(m_window->windowState() & ~Qt::WindowMinimized);
    m_window->show();
    m_window->raise();
    m_window->activateWindow();
}

void VelmoraApp::buildStore()
{
    m_notifications = std::make_unique<Notifications>();
    m_clock = std::make_unique<async::SystemClock>();
    m_executor = std::make_unique<async::ThreadExecutor>();
    m_tagFiles = std::make_unique<LibraryTagFiles>(AppPaths::tagVaultFolder());
    m_tagReader = std::make_unique<LibraryTagReader>(*m_preferences);
    m_analyser = std::make_unique<LibraryAnalyser>();
    if (m_sessionStorage && !m_sessionStorage->isOff())
        m_editJournal = std::make_unique<EditJournal>(AppPaths::dataFolder());
    m_resourceWatch = std::make_unique<ResourceWatch>(*m_clock, *m_executor);
    m_trashCan = std::make_unique<LibraryTrashCan>();
    m_waveforms = std::make_unique<WaveformCache>(*m_clock, *m_executor, AppPaths::waveformFolder());
    m_envelopes = std::make_unique<LibraryEnvelopes>(*m_waveforms);
    m_library = std::make_unique<LibraryStore>(LibraryServices{
        .clock = *m_clock,
        .executor = *m_executor,
        .preferences = *m_preferences,
        .notifications = *m_notifications,
        .tagFiles = *m_tagFiles,
        .tagReader = *m_tagReader,
        .analyser = *m_analyser,
        .envelopes = *m_envelopes,
        .trashCan = *m_trashCan,
        .sessionStorage = m_sessionStorage ? *m_sessionStorage : WorkspaceSessionStorage::none(),
        .power = *m_resourceWatch,
        .editJournal = m_editJournal.get(),
    });
    keepEnvelopes(m_library->fileEvents(), *m_waveforms, this);
}

/// Takes away what decoders left behind when an earlier run was killed.
async::Task<> VelmoraApp::sweepTemporaryFiles(std::stop_token stop)
{
    const auto sweep = [](const std::stop_token&) { TemporarySweep::removeStale(); };
    co_await m_executor->run(async::Priority::Background, std::move(stop), sweep);
}

void VelmoraApp::chooseImage(std::function<void(const QByteArray&)> chosen)
{
    OpenPanel::openImage(m_window.get(), [this, chosen = std::move(chosen)](const QUrl& url) {
        m_imageRead.start(
            [this, url, chosen](std::stop_token stop) { return readImage(url, chosen, std::move(stop)); });
    });
}

/// A picture may lie on a slow disk. One byte more than is taken, so that what is too large shows as that.
async::Task<> VelmoraApp::readImage(QUrl url, std::function<void(const QByteArray&)> chosen, std::stop_token stop)
{
    const auto read = [url](const std::stop_token&) {
        QFile file(url.toLocalFile());
        return file.open(QIODevice::ReadOnly) ? file.read(ArtworkImage::kMaximumBytes + 1) : QByteArray();
    };
    const QByteArray bytes = co_await m_executor->run(async::Priority::UserInitiated, std::move(stop), read);
    chosen(bytes);
}

/// Gives player and library to each other.
void VelmoraApp::buildPlayer()
{
    m_audio->setDevice(m_preferences->audioOutputDevice.get());
    connect(m_preferences.get(), &Preferences::changed, this, [this](const QString& key) {
        if (key == m_preferences->audioOutputDevice.key())
            m_audio->setDevice(m_preferences->audioOutputDevice.get());
    });
    m_player = std::make_unique<AudioPlayer>(
        AudioPlayer::Services{*m_clock, *m_executor, *m_preferences, *m_notifications, *m_audio});
    AudioPlayer::Listeners listeners;
    listeners.playbackStateDidChange = [this](bool isPlaying, const std::optional<TrackID>& currentTrackID) {
        m_library->playback().playbackStateDidChange(isPlaying, currentTrackID);
    };
    listeners.waveformPlaybackDidChange = [this](bool isPlaying, const QUrl& currentURL) {
        m_library->waveforms().playerTold(isPlaying, currentURL, m_player->currentID());
    };
    listeners.fail = [this](const QString& message, const QUrl& file) {
        m_library->workspace().setLastError(
            message,
            VelmoraLocalization::format(QStringLiteral("Не удалось открыть «%@»"), {FileURL::lastPathComponent(file)}));
    };
    listeners.report = [this](const QString& message, bool isWarning) {
        if (isWarning)
            m_library->status().showText(message, StatusIcon::SoundOff, WorkspaceStatus::Tone::Warning,
                                         kSoundWarningDuration);
        else
            m_library->status().showText(message, StatusIcon::Sound, WorkspaceStatus::Tone::Neutral);
    };
    m_player->setListeners(std::move(listeners));
    m_libraryPlayer = std::make_unique<LibraryPlayer>(*m_player);
    m_library->playback().setPlayer(m_libraryPlayer.get());
}

void VelmoraApp::buildWindow()
{
    ContentView::Surroundings surroundings;
    surroundings.endEditing = &endEditing;
    surroundings.chooseFiles = [this](LibraryTab tab, std::function<void(const QList<QUrl>&)> chosen) {
        OpenPanel::open(m_window.get(), tab, std::move(chosen));
    };
    surroundings.chooseImage = [this](std::function<void(const QByteArray&)> chosen) {
        chooseImage(std::move(chosen));
    };
    surroundings.openFolder = [](const QUrl& folder) { QDesktopServices::openUrl(folder); };
    m_contentView = std::make_unique<ContentView>(*m_library, *m_player, std::move(surroundings));
    connect(m_notifications.get(), &Notifications::velmoraLanguageDidChange, this,
            [this] { m_toolkitTexts.setLanguage(VelmoraLocalization::language()); });
    m_window = std::make_unique<MainWindow>(WindowServices{*m_library, *m_contentView, *m_player, *m_audio, *m_executor,
                                                           *m_clock, *m_waveforms, &AudioMetadataLoader::artwork,
                                                           &TagInventoryReader::read});
    connect(&m_library->waveforms(), &Waveforms::prepared, m_window.get(),
            [this](const QUrl& url) { m_window->rowWaveforms().arrived(url); });
}

void VelmoraApp::watchLifecycle()
{
    Lifecycle::Savers savers;
    savers.saveWorkspaceSessionNow = [this] { m_library->session().saveWorkspaceSessionNow(); };
    savers.saveWorkspaceSessionSynchronouslyForTermination = [this] {
        m_library->unwrittenEdits().keep();
        m_library->session().saveWorkspaceSessionSynchronouslyForTermination();
    };
    m_lifecycle = std::make_unique<Lifecycle>(std::move(savers));
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        using Phase = Lifecycle::ScenePhase;
        m_lifecycle->scenePhaseChanged(state == Qt::ApplicationActive     ? Phase::Active
                                       : state == Qt::ApplicationInactive ? Phase::Inactive
                                                                          : Phase::Background);
    });
    m_terminationSignals = std::make_unique<TerminationSignals>();
    // At a log-out nobody is there to answer: edits that are not in their files are kept without asking.
    connect(m_terminationSignals.get(), &TerminationSignals::requested, qApp, [] { QCoreApplication::exit(); });
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] { m_lifecycle->terminate(); });
}
