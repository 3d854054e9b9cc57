#include "ui/window/WindowCommands.h"

#include "core/library/LibraryStore.h"
#include "core/library/undo/History.h"
#include "core/library/workspace/Workspace.h"
#include "platform/Preferences.h"
#include "ui/context/DashboardActions.h"
#include "ui/sections/SectionDescriptor.h"
#include "ui/sections/SectionParts.h"
#include "ui/sections/SectionView.h"
#include "ui/text/Texts.h"
#include "ui/window/MainWindow.h"

#include <QAction>
#include <QMenu>

WindowCommands::WindowCommands(const WindowContext& context, MainWindow& window)
    : QObject(&window)
    , m_context(context)
    , m_window(window)
{
    History& undo = context.store.history();
    m_open = add({QKeySequence(Qt::CTRL | Qt::Key_O)}, [this] { m_context.actions.openPanel(); });
    m_add = add({}, [this] { m_context.actions.openSectionPanel(); });
    m_paste = add({QKeySequence(Qt::CTRL | Qt::Key_V)}, [this] { pastePicture(); });
    m_undo = add({QKeySequence(Qt::CTRL | Qt::Key_Z)}, [&undo] { undo.undo(); });
    m_redo = add({QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z)}, [&undo] { undo.redo(); });
    m_selectAll = add({QKeySequence(Qt::CTRL | Qt::Key_A)}, [this] { m_window.activeSection().selectAll(); });
    m_favorite = add({QKeySequence(Qt::Key_F)}, [this] { toggleFavorites(); });
    m_remove = add({QKeySequence(Qt::Key_Delete), QKeySequence(Qt::Key_Backspace)}, [this] { remove(); });
    m_trash = add({QKeySequence(Qt::SHIFT | Qt::Key_Delete), QKeySequence(Qt::CTRL | Qt::Key_Backspace)},
                  [this] { moveToTrash(); });
    m_remove->setAutoRepeat(false);
    m_trash->setAutoRepeat(false);
    m_reveal = add({}, [this] { reveal(); });
    m_doubleTempo = add({QKeySequence(Qt::ALT | Qt::Key_Up)}, [this] { scaleTempo(2); });
    m_halveTempo = add({QKeySequence(Qt::ALT | Qt::Key_Down)}, [this] { scaleTempo(0.5); });
    m_doubleTempo->setAutoRepeat(false);
    m_halveTempo->setAutoRepeat(false);
    m_tags = add({QKeySequence(Qt::CTRL | Qt::Key_I)}, [this] {
        Preference<bool>& visible = m_context.store.preferences().inspectorVisible;
        if (m_window.activeSection().descriptor().section().holdsLibraryTracks())
            visible.set(!visible.get());
    });
    m_tags->setCheckable(true);
    for (LibraryTab tab : kAllLibraryTabs) {
        const auto digit = static_cast<Qt::Key>(Qt::Key_1 + static_cast<int>(tab));
        add({QKeySequence(Qt::CTRL | digit)}, [this, tab] { m_context.actions.activateTab(tab); });
    }
    connect(&undo, &History::changed, this, &WindowCommands::refreshUndo);
    retranslate();
}

QAction* WindowCommands::add(const QList<QKeySequence>& shortcuts, std::function<void()> perform)
{
    auto* action = new QAction(this);
    action->setShortcuts(shortcuts);
    connect(action, &QAction::triggered, this, std::move(perform));
    m_window.addAction(action);
    return action;
}

void WindowCommands::retranslate()
{
    m_open->setText(Texts::localized(QStringLiteral("Добавить файлы…")));
    m_paste->setText(Texts::localized(QStringLiteral("Вставить изображение")));
    m_selectAll->setText(Texts::localized(QStringLiteral("Выделить всё")));
    m_favorite->setText(Texts::localized(QStringLiteral("Добавить в избранное или убрать")));
    m_remove->setText(Texts::localized(QStringLiteral("Убрать из раздела")));
    m_trash->setText(Texts::localized(QStringLiteral("Переместить в Корзину")));
    m_trash->setToolTip(Texts::localized(QStringLiteral("Отмена вернёт файлы из Корзины на место")));
    m_reveal->setText(Texts::localized(QStringLiteral("Открыть в Finder")));
    m_doubleTempo->setText(Texts::localized(QStringLiteral("Удвоить темп")));
    m_halveTempo->setText(Texts::localized(QStringLiteral("Уменьшить темп вдвое")));
    m_tags->setText(Texts::localized(QStringLiteral("Теги")));
    refreshUndo();
}

void WindowCommands::refreshUndo()
{
    const History& undo = m_context.store.history();
    const auto named = [](const QString& word, const QString& action) {
        return action.isEmpty() ? word : QStringLiteral("%1: %2").arg(word, action);
    };
    m_undo->setText(named(Texts::localized(QStringLiteral("Отменить")), undo.undoActionName()));
    m_redo->setText(named(Texts::localized(QStringLiteral("Повторить")), undo.redoActionName()));
    m_undo->setEnabled(undo.canUndo());
    m_redo->setEnabled(undo.canRedo());
}

void WindowCommands::toggleFavorites()
{
    SectionView& section = m_window.activeSection();
    if (!section.descriptor().section().holdsLibraryTracks())
        return;
    const QSet<TrackID> ids = section.selectedIDs();
    if (!ids.isEmpty())
        m_context.actions.toggleFavorites(ids);
}

void WindowCommands::scaleTempo(double factor)
{
    SectionView& section = m_window.activeSection();
    const QSet<TrackID> ids = section.selectedIDs();
    if (section.descriptor().section().holdsLibraryTracks() && !ids.isEmpty())
        m_context.actions.scaleTempo(factor, ids);
}

void WindowCommands::remove()
{
    SectionView& section = m_window.activeSection();
    const QSet<TrackID> ids = section.selectedIDs();
    // The converter keeps a selection of its own.
    if (!ids.isEmpty() || section.descriptor().section().holdsJobs)
        m_context.actions.removeFromSection(section.tab(), ids);
}

void WindowCommands::moveToTrash()
{
    const QSet<TrackID> ids = m_window.activeSection().selectedIDs();
    if (!ids.isEmpty())
        m_context.actions.moveToTrash(ids);
}

void WindowCommands::pastePicture()
{
    if (SectionParts* parts = m_window.activeSection().parts())
        parts->paste();
}

void WindowCommands::reveal()
{
    const QSet<TrackID> ids = m_window.activeSection().selectedIDs();
    if (!ids.isEmpty())
        m_context.actions.revealInFileManager(ids);
}

void WindowCommands::fillMenu(QMenu& menu) const
{
    const bool hasSelection = !m_window.activeSection().selectedIDs().isEmpty();
    m_favorite->setEnabled(true); // its shortcut decides by itself
    menu.addAction(m_open);
    const SectionDescriptor& descriptor = m_window.activeSection().descriptor();
    if (!descriptor.addsByMainButton()) {
        m_add->setText(Texts::localized(descriptor.words.addFromMenu));
        menu.addAction(m_add);
    }
    if (const SectionParts* parts = m_window.activeSection().parts(); parts && parts->takesPictures())
        menu.addAction(m_paste);
    menu.addSeparator();
    menu.addAction(m_undo);
    menu.addAction(m_redo);
    menu.addSeparator();
    menu.addAction(m_selectAll);
    menu.setToolTipsVisible(true);
    if (hasSelection) {
        if (m_window.activeSection().descriptor().section().holdsLibraryTracks())
            menu.addAction(m_favorite);
        menu.addAction(m_reveal);
        menu.addSeparator();
        if (!descriptor.words.removal.isEmpty()) {
            m_remove->setText(Texts::localized(descriptor.words.removal));
            menu.addAction(m_remove);
        }
        if (descriptor.offersTrash)
            menu.addAction(m_trash);
    }
    if (m_window.activeSection().descriptor().section().holdsLibraryTracks()) {
        m_tags->setChecked(m_context.store.preferences().inspectorVisible.get());
        menu.addSeparator();
        menu.addAction(m_tags);
    }
}
