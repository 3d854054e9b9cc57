#include "ui/window/MainWindow.h"

#include "core/library/LibraryStore.h"
#include "core/library/tagwriting/ClosingQuestion.h"
#include "core/library/workspace/Workspace.h"
#include "core/model/WorkspaceLayout.h"
#include "platform/Notifications.h"
#include "platform/Preferences.h"
#include "ui/context/DashboardActions.h"
#include "ui/context/WindowContext.h"
#include "ui/controls/ThemeButton.h"
#include "ui/inspector/Inspector.h"
#include "ui/player/PlayerBar.h"
#include "ui/sections/SectionHeader.h"
#include "ui/sections/SectionView.h"
#include "ui/theme/Icons.h"
#include "ui/theme/Theme.h"
#include "ui/thumbnails/ThumbnailCache.h"
#include "ui/waveform/RowWaveforms.h"
#include "ui/window/Banner.h"
#include "ui/window/KeyPrecedence.h"
#include "ui/window/Sections.h"
#include "ui/window/SettingsMenu.h"
#include "ui/window/Sidebar.h"
#include "ui/window/StatusStrip.h"
#include "ui/window/TrackMenu.h"
#include "ui/window/WindowCommands.h"
#include "ui/window/WorkspaceWindowSizer.h"

#include <QApplication>
#include <QCloseEvent>
#include <QKeyEvent>
#include <QMenu>
#include <QStackedWidget>
#include <QVBoxLayout>

namespace {

Appearance appearanceOf(const Preferences& preferences)
{
    return preferences.appAppearance.get() == QLatin1StringView("light") ? Appearance::Light : Appearance::Dark;
}

bool isCompact(const Preferences& preferences)
{
    return workspaceLayoutFromRawValue(preferences.workspaceLayout.get()) == WorkspaceLayout::Compact;
}

} // namespace

MainWindow::MainWindow(const WindowServices& services)
    : m_theme(std::make_unique<Theme>(appearanceOf(services.store.preferences())))
    , m_thumbnails(std::make_unique<ThumbnailCache>(services.executor, services.readArtwork))
    , m_rowWaveforms(std::make_unique<RowWaveforms>(services.waveforms))
    , m_context(new WindowContext{services.store, services.actions, services.player, services.audio, *m_theme,
                                  *m_thumbnails, services.waveforms, *m_rowWaveforms, services.clock,
                                  services.executor})
{
    m_theme->install();
    setWindowTitle(QStringLiteral("Velmora"));
    setWindowIcon(Icons::applicationIcon());
    m_sidebar = new Sidebar(*m_context, this);
    m_stack = new QStackedWidget(this);
    m_player = new PlayerBar(*m_context, this);
    m_status = new StatusStrip(*m_context, this);
    buildSections();
    m_inspector = new Inspector(*m_context, Inspector::Services{services.executor, services.readTagInventory}, this);
    buildLayout();
    m_banner = new Banner(*m_context, *m_stack);
    connect(m_banner, &Banner::leaveWanted, this, [this] { activeSection().focusList(); });
    m_commands = std::make_unique<WindowCommands>(*m_context, *this);
    connectWorkspace();
    connectPreferences();
    applySidebar();
    placePlayer();
    showTab(services.store.workspace().activeTab());
    m_sizer = std::make_unique<WorkspaceWindowSizer>(*this, services.store.preferences());
}

MainWindow::~MainWindow() = default;

void MainWindow::buildSections()
{
    for (LibraryTab tab : kAllLibraryTabs) {
        auto* section = new SectionView(*m_context, Sections::of(tab), m_stack);
        m_sections[static_cast<size_t>(tab)] = section;
        m_stack->addWidget(section);
        section->setDensity(m_context->store.preferences().tableDensity.get());
        connect(section, &SectionView::contextMenuWanted, this, &MainWindow::openTrackMenu);
        connect(section, &SectionView::filesDropped, this,
                [this, tab](const QList<QUrl>& urls) { m_context->actions.receiveDroppedTracks(urls, tab); });
        ThemeButton& menuButton = section->header().menuButton();
        connect(&menuButton, &QAbstractButton::clicked, this, [this, &menuButton] {
            auto* menu = new QMenu(this);
            menu->setAttribute(Qt::WA_DeleteOnClose);
            m_commands->fillMenu(*menu);
            menu->popup(menuButton.mapToGlobal(QPoint(0, menuButton.height() + Metrics::kStep)));
        });
    }
}

void MainWindow::buildLayout()
{
    m_column = new QVBoxLayout;
    m_column->setSpacing(0);
    m_column->addWidget(m_stack, 1);
    auto* upper = new QHBoxLayout;
    upper->setSpacing(0);
    upper->addWidget(m_sidebar);
    upper->addLayout(m_column, 1);
    auto* all = new QVBoxLayout(this);
    all->setContentsMargins(0, 0, 0, 0);
    all->setSpacing(0);
    all->addLayout(upper, 1);
    all->addWidget(m_status);
    connect(m_sidebar, &Sidebar::collapseToggled, this, &MainWindow::toggleSidebar);
    connect(m_status, &StatusStrip::leaveWanted, this, [this] { activeSection().focusList(); });
    connect(m_inspector, &Inspector::leaveWanted, this, [this] { activeSection().focusList(); });
    connect(m_sidebar, &Sidebar::settingsWanted, this, &MainWindow::openSettings);
    connect(m_sidebar, &Sidebar::filesDropped, this,
            [this](const QList<QUrl>& urls, LibraryTab tab) { m_context->actions.receiveDroppedTracks(urls, tab); });
}

void MainWindow::connectWorkspace()
{
    using Destination = Track::MetadataDestination;
    Workspace& workspace = m_context->store.workspace();
    connect(&workspace, &Workspace::tracksChanged, this, [this] { listChanged(Destination::Library); });
    connect(&workspace, &Workspace::sectionListChanged, this, &MainWindow::listChanged);
    connect(&workspace, &Workspace::conversionItemsChanged, this,
            [this] { markDirty([](const LibrarySection& section) { return section.holdsJobs; }); });
    connect(&workspace, &Workspace::duplicateSearchRootsChanged, this,
            [this] { listChanged(Destination::Duplicates); });
    connect(&workspace, &Workspace::orderChanged, this,
            [this] { markDirty([](const LibrarySection& section) { return section.holdsLibraryTracks(); }); });
    connect(&workspace, &Workspace::selectionChanged, m_player, &PlayerBar::refresh);
    connect(&workspace, &Workspace::activeTabChanged, this, &MainWindow::showTab);
    connect(&m_context->store.closingQuestion(), &ClosingQuestion::closeWanted, this, &QWidget::close,
            Qt::QueuedConnection);
    connect(&m_context->store.notifications(), &Notifications::velmoraLanguageDidChange, this,
            &MainWindow::retranslate);
}

void MainWindow::connectPreferences()
{
    Preferences& preferences = m_context->store.preferences();
    connect(&preferences, &Preferences::changed, this, [this, &preferences](const QString& key) {
        if (key == preferences.appAppearance.key()) {
            m_theme->setAppearance(appearanceOf(preferences));
        } else if (key == preferences.tableDensity.key()) {
            for (SectionView* section : m_sections)
                section->setDensity(preferences.tableDensity.get());
        } else if (key == preferences.dashboardPlayerOnTop.key()) {
            placePlayer();
        } else if (key == preferences.workspaceLayout.key() || key == preferences.sidebarCollapsed.key() ||
                   key == preferences.compactSidebarCollapsed.key()) {
            applySidebar();
        }
    });
}

void MainWindow::listChanged(Track::MetadataDestination list)
{
    markDirty([list](const LibrarySection& section) { return section.list == list && !section.holdsJobs; });
    m_player->refresh();
}

void MainWindow::markDirty(const std::function<bool(const LibrarySection&)>& concerns)
{
    for (SectionView* section : m_sections) {
        if (concerns(section->descriptor().section()))
            section->markDirty();
    }
    m_sidebar->countsChanged();
}

SectionView& MainWindow::activeSection() const
{
    return section(m_context->store.workspace().activeTab());
}

void MainWindow::showTab(LibraryTab tab)
{
    const bool listHadFocus = m_stack->isAncestorOf(focusWidget());
    for (SectionView* each : m_sections) {
        if (each->tab() != tab)
            each->setShown(false);
    }
    SectionView& shown = section(tab);
    shown.setShown(true);
    if (shown.descriptor().section().holdsLibraryTracks())
        shown.setPanel(m_inspector);
    m_stack->setCurrentWidget(&shown);
    if (const auto played = m_context->actions.playlistReturnPlaybackID();
        played && shown.descriptor().remembersScrolling)
        shown.scrollTo(*played);
    m_sidebar->setActiveTab(tab);
    if (listHadFocus || !isVisible())
        shown.focusList();
    m_player->refresh();
}

void MainWindow::placePlayer()
{
    const bool onTop = m_context->store.preferences().dashboardPlayerOnTop.get();
    m_column->removeWidget(m_player);
    m_column->insertWidget(onTop ? 0 : 1, m_player);
    m_player->setOnTop(onTop);
}

void MainWindow::applySidebar()
{
    const Preferences& preferences = m_context->store.preferences();
    m_sidebar->setCollapsed(isCompact(preferences) ? preferences.compactSidebarCollapsed.get()
                                                   : preferences.sidebarCollapsed.get());
}

void MainWindow::toggleSidebar()
{
    Preferences& preferences = m_context->store.preferences();
    Preference<bool>& collapsed =
        isCompact(preferences) ? preferences.compactSidebarCollapsed : preferences.sidebarCollapsed;
    collapsed.set(!m_sidebar->isCollapsed());
}

void MainWindow::openTrackMenu(const QPoint& globalPosition)
{
    SectionView& shown = activeSection();
    const QSet<TrackID> ids = shown.selectedIDs();
    if (ids.isEmpty())
        return;
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    TrackMenu::build(*menu, *m_context, shown.descriptor(), ids, shown.focusedTrack());
    menu->popup(globalPosition);
}

void MainWindow::openSettings(const QPoint& globalPosition)
{
    auto* menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    SettingsMenu::build(*menu, *m_context);
    menu->popup(globalPosition);
}

void MainWindow::retranslate()
{
    for (SectionView* section : m_sections)
        section->retranslate();
    m_sidebar->retranslate();
    m_player->retranslate();
    m_status->retranslate();
    m_inspector->retranslate();
    m_banner->retranslate();
    m_commands->retranslate();
    m_sidebar->countsChanged();
}

/// A key that is a command goes to the control under focus instead when the window accepts the toolkit's question.
bool MainWindow::event(QEvent* event)
{
    if (event->type() == QEvent::ShortcutOverride &&
        KeyPrecedence::focusKeeps(QApplication::focusWidget(), static_cast<const QKeyEvent&>(*event))) {
        event->accept();
        return true;
    }
    return QWidget::event(event);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(m_inspector->mayClose() && m_context->store.closingQuestion().mayClose());
}

void MainWindow::hideEvent(QHideEvent* event)
{
    m_sizer->remember();
    QWidget::hideEvent(event);
}
