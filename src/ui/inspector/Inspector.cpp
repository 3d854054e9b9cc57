#include "ui/inspector/Inspector.h"

#include "core/library/LibraryStore.h"
#include "core/library/selection/Selection.h"
#include "core/library/status/StatusLine.h"
#include "core/library/tagwriting/GivenUpEdits.h"
#include "core/library/tagwriting/TagWriting.h"
#include "core/library/tagwriting/UnwrittenEdits.h"
#include "core/library/workspace/Workspace.h"
#include "platform/FileURL.h"
#include "platform/Preferences.h"
#include "ui/cells/EditMark.h"
#include "ui/context/DashboardActions.h"
#include "ui/controls/ThemeButton.h"
#include "ui/controls/ThemeLabel.h"
#include "ui/inspector/CoverWell.h"
#include "ui/inspector/InspectorField.h"
#include "ui/inspector/InspectorFields.h"
#include "ui/inspector/PinnedStrip.h"
#include "ui/inspector/SaveBar.h"
#include "ui/inspector/SaveSummary.h"
#include "ui/inspector/WrappedText.h"
#include "ui/text/Texts.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QShortcut>

namespace {

constexpr int kSide = 20; // margin at the left and at the right
constexpr int kNameLines = 4;
constexpr int kFactsLines = 3;
constexpr async::Duration kDelay = async::seconds(0.12);
constexpr int kLow = 560; // below this height the fields need the cover's room

QString subjectOf(const InspectorModel& model)
{
    return model.single() ? FileURL::lastPathComponent(model.single()->url()) : Texts::trackCount(model.count());
}

} // namespace

Inspector::Inspector(const WindowContext& context, const Services& services, QWidget* parent)
    : Panel(context.theme, &ThemeColours::surface, Qt::LeftEdge, parent)
    , m_context(context)
    , m_executor(services.executor)
    , m_inventories(services.executor, services.readInventory)
    , m_strip(new PinnedStrip(context.theme, this))
    , m_scroll(new QScrollArea(this))
    , m_empty(new QWidget(this))
    , m_well(new CoverWell(context, this))
    , m_name(new WrappedText(context.theme, {TextRole::BodyStrong, &ThemeColours::text, kNameLines}, this))
    , m_facts(new WrappedText(context.theme, {TextRole::Secondary, &ThemeColours::text2, kFactsLines}, this))
    , m_fields(new InspectorFields(context, m_model, this))
    , m_saveBar(new SaveBar(context.theme, this))
    , m_delay(context.clock, kDelay, [this] { refresh(); })
{
    build();
    connectWorkspace();
    connect(&context.theme, &Theme::changed, this, &Inspector::applyColours);
    applyColours();
    retranslate();
    setVisible(context.store.preferences().inspectorVisible.get());
}

Inspector::~Inspector() = default;

void Inspector::build()
{
    setFixedWidth(kWidth);
    m_strip->hide();
    m_scroll->setWidget(buildContent());
    m_scroll->setWidgetResizable(true);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // an idle one is not seen, and nothing jumps
    m_scroll->viewport()->setAutoFillBackground(false);
    m_scroll->widget()->setAutoFillBackground(false);
    auto* nothing = new ThemeLabel(m_context.theme, TextRole::Body, &ThemeColours::text3, m_empty);
    nothing->setObjectName(QStringLiteral("nothing"));
    nothing->setWrapped(kWidth - 2 * kSide);
    auto* emptyLayout = new QVBoxLayout(m_empty);
    emptyLayout->addWidget(nothing, 0, Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(Metrics::kHairline, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_strip);
    layout->addWidget(m_scroll, 1);
    layout->addWidget(m_empty, 1);
    layout->addWidget(m_saveBar);

    connect(m_fields, &InspectorFields::touched, this, [this] {
        m_hasWarned = false;
        refresh();
    });
    connect(m_fields, &InspectorFields::saveWanted, this, &Inspector::save);
    connect(m_fields, &InspectorFields::leaveWanted, this, &Inspector::leaveWanted);
    connect(m_well, &CoverWell::chooseWanted, this, &Inspector::chooseCover);
    connect(m_well, &CoverWell::offered, this, &Inspector::takeCover);
    connect(m_well, &CoverWell::refused, this, &Inspector::refuseCover);
    for (const ThemeButton* each : {&m_saveBar->save(), &m_strip->save()})
        connect(each, &QAbstractButton::clicked, this, &Inspector::save);
    for (const ThemeButton* each : {&m_saveBar->revert(), &m_strip->revert()})
        connect(each, &QAbstractButton::clicked, this, &Inspector::revertAll);
    orderTabs();
    auto* saving = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_S), this);
    connect(saving, &QShortcut::activated, this, &Inspector::save);
}

/// As everything stands, top to bottom.
void Inspector::orderTabs()
{
    QList<QWidget*> order{&m_strip->save(), &m_strip->revert(), m_well};
    for (TagField field : InspectorFields::order())
        order.append(&m_fields->field(field).editor());
    order += {&m_saveBar->link(), &m_saveBar->revert(), &m_saveBar->save()};
    for (qsizetype i = 1; i < order.size(); ++i)
        setTabOrder(order[i - 1], order[i]);
}

void Inspector::applyColours()
{
    QPalette palette = m_context.theme.palette();
    palette.setColor(QPalette::Base, m_context.theme.colours().surface); // behind the scroll bar
    m_scroll->setPalette(palette);
}

QWidget* Inspector::buildContent()
{
    auto* words = new QVBoxLayout;
    words->setSpacing(Metrics::kStep);
    words->addWidget(m_name);
    words->addWidget(m_facts);
    words->addStretch();
    auto* top = new QHBoxLayout;
    top->setSpacing(Metrics::kSpace4);
    top->addWidget(m_well, 0, Qt::AlignTop);
    top->addLayout(words, 1);
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(kSide, Metrics::kSpace4, kSide - Metrics::kScrollBar, Metrics::kSpace3);
    layout->setSpacing(Metrics::kSpace4);
    layout->addLayout(top);
    layout->addWidget(m_fields);
    layout->addStretch();
    return content;
}

void Inspector::connectWorkspace()
{
    Workspace& workspace = m_context.store.workspace();
    connect(&workspace, &Workspace::selectionChanged, this, &Inspector::selectionMoved);
    connect(&workspace, &Workspace::tracksChanged, this, &Inspector::selectionMoved);
    connect(&workspace, &Workspace::activeTabChanged, this, &Inspector::selectionMoved);
    connect(&workspace, &Workspace::artworkWritingIDsChanged, this, [this] {
        m_inventories.forget();
        selectionMoved();
    });
    TagSaver& saver = m_context.store.tagWriting().saver();
    connect(&saver, &TagSaver::progressChanged, this, [this, &saver] {
        if (saver.progress().total > 0)
            return;
        m_inventories.forget(); // the files are not what they were
        selectionMoved();
    });
    connect(&m_inventories, &InventoryLoads::arrived, this, &Inspector::refresh);

    Preferences& preferences = m_context.store.preferences();
    connect(&preferences, &Preferences::changed, this, [this, &preferences](const QString& key) {
        if (key == preferences.inspectorVisible.key())
            setVisible(preferences.inspectorVisible.get());
        else if (key == preferences.keepsOtherTagEntries.key())
            selectionMoved();
    });
    connect(&m_saveBar->link(), &QAbstractButton::clicked, this, [&preferences] {
        preferences.keepsOtherTagEntriesAsked.set(true);
        preferences.keepsOtherTagEntries.set(!preferences.keepsOtherTagEntries.get());
    });
}

void Inspector::selectionMoved()
{
    if (isHidden())
        return;
    const qsizetype selected = m_context.store.workspace().activeSelection().size();
    if (std::max<qsizetype>(selected, m_model.count()) <= kManyTracks)
        refresh();
    else
        m_delay.startOnce();
}

void Inspector::showEvent(QShowEvent* event)
{
    refresh();
    Panel::showEvent(event);
}

void Inspector::resizeEvent(QResizeEvent* event)
{
    Panel::resizeEvent(event);
    fitHeight();
}

/// In a low window the cover shrinks, and the buttons stand once: while edits are pinned, in the strip above.
void Inspector::fitHeight()
{
    const bool isLow = height() < kLow;
    m_well->setSmall(isLow);
    m_saveBar->setButtonsShown(m_model.writableCount() > 0 && !(isLow && m_model.isPinned()));
}

void Inspector::hideEvent(QHideEvent* event)
{
    m_delay.stop();
    m_inventories.cancel();
    Panel::hideEvent(event);
}

void Inspector::refresh()
{
    if (isHidden())
        return;
    m_delay.stop();
    Workspace& workspace = m_context.store.workspace();
    m_model.follow(workspace.tracks(), m_context.store.selection().activeSelection());
    const std::optional<Track>& single = m_model.single();
    if (single && InspectorModel::isWritable(*single))
        m_model.setInventory(m_inventories.of(*single));
    else
        m_model.setInventory(std::nullopt);
    showModel();
}

void Inspector::showModel()
{
    const bool isEmpty = m_model.count() == 0;
    m_scroll->setVisible(!isEmpty);
    m_saveBar->setVisible(!isEmpty);
    m_empty->setVisible(isEmpty);
    m_strip->setVisible(m_model.isPinned());
    fitHeight();
    if (isEmpty)
        return;
    if (m_model.isPinned())
        m_strip->setSubject(subjectOf(m_model));
    showSubject();
    showCover();
    m_fields->refresh();
    const bool keepsOthers = m_context.store.preferences().keepsOtherTagEntries.get();
    const QString link = Texts::localized(keepsOthers ? QStringLiteral("Больше не оставлять")
                                                      : QStringLiteral("Оставлять обложку и прочее"));
    m_saveBar->setSummary(SaveSummary::text(m_model, keepsOthers),
                          SaveSummary::dependsOnPreference(m_model) ? link : QString());
    const bool isUnwritten = !m_model.unwrittenIDs().isEmpty();
    const bool isLeft = isUnwritten && m_context.store.unwrittenEdits().leftCount() > 0;
    m_saveBar->setEnabled((m_model.touched() || isUnwritten) && m_model.writableCount() > 0,
                          m_model.touched() || isLeft);
}

void Inspector::showSubject()
{
    const std::optional<Track>& single = m_model.single();
    if (single) {
        m_name->setText(FileURL::lastPathComponent(single->url()));
        m_facts->setText(Texts::facts(
            {single->format(), single->bitRateText(), Texts::length(single->duration()), EditMark::text(*single)}));
    } else {
        m_name->setText(VelmoraLocalization::format(QStringLiteral("Выбрано: %d"), {m_model.count()}));
        const int unwritten = m_model.unwrittenCount();
        const QString edited =
            unwritten > 0 ? VelmoraLocalization::format(QStringLiteral("правки ещё не в файлах: %d"), {unwritten})
                          : QString();
        m_facts->setText(Texts::facts({Texts::totalLength(m_model.totalLength()), edited}));
    }
}

void Inspector::showCover()
{
    m_well->setCovers(m_model.covers());
    const bool isWriting = m_context.store.workspace().artworkWritingIDs().intersects(m_model.ids());
    if (isWriting) {
        m_well->setMode(CoverWell::Mode::Writing);
        m_well->setHint(Texts::localized(QStringLiteral("Подождите: обложка ещё сохраняется в файл")));
    } else if (!m_model.takesPictures()) {
        m_well->setMode(CoverWell::Mode::Closed);
        m_well->setHint(Texts::localized(QStringLiteral("В файлы этого формата обложка не записывается")));
    } else {
        m_well->setMode(CoverWell::Mode::Open);
        m_well->setHint(Texts::localized(QStringLiteral("Перетащите или вставьте изображение")));
    }
}

void Inspector::save()
{
    const TagFields touched = m_model.touched();
    const Selection& selection = m_context.store.selection();
    if (!touched) // what a failed or stopped save left out
        m_context.store.unwrittenEdits().writeAgain(selection.shown(m_model.unwrittenIDs()));
    if (!touched || m_model.writableCount() == 0)
        return;
    const QSet<TrackID> ids = selection.shown(m_model.writableIDs());
    if (ids.isEmpty()) { // the edits stay until a section shows their rows
        m_context.store.status().showStatus(QStringLiteral("Правки не сохранены: этот раздел не показывает их строк"),
                                            StatusIcon::Warning, WorkspaceStatus::Tone::Warning);
        return;
    }
    const AudioTags tags = m_model.edited();
    m_model.revertAll(); // the rows bring the new values back at once
    m_context.actions.saveTags(tags, touched, ids);
    refresh();
}

bool Inspector::mayClose()
{
    if (!m_model.touched() || std::exchange(m_hasWarned, true))
        return true;
    m_context.store.preferences().inspectorVisible.set(true);
    m_context.store.status().showStatus(
        QStringLiteral("Правки тегов не сохранены. Чтобы выйти без них, закройте окно ещё раз"), StatusIcon::Warning,
        WorkspaceStatus::Tone::Warning);
    return false;
}

void Inspector::revertAll()
{
    if (m_model.touched())
        m_model.revertAll();
    else
        m_context.store.givenUpEdits().giveUp(m_model.unwrittenIDs());
    refresh();
}

void Inspector::keyPressEvent(QKeyEvent* event)
{
    if (event->matches(QKeySequence::Paste))
        m_well->paste();
    else if (event->key() == Qt::Key_Escape)
        emit leaveWanted();
    else
        Panel::keyPressEvent(event);
}

void Inspector::chooseCover()
{
    m_context.actions.chooseArtwork([&actions = m_context.actions, ids = m_model.picturableIDs()](
                                        const QByteArray& image) { actions.assignArtwork(image, ids); });
}

void Inspector::takeCover(const PictureSource& offer)
{
    const QSet<TrackID> ids = m_model.picturableIDs();
    m_cover.start([this, offer, ids](std::stop_token stop) { return assign(offer, ids, std::move(stop)); });
}

async::Task<> Inspector::assign(PictureSource offer, QSet<TrackID> ids, std::stop_token stop)
{
    auto load = [offer](const std::stop_token&) { return PictureSources::bytesOf(offer); };
    const QByteArray bytes = co_await m_executor.run(async::Priority::UserInitiated, stop, std::move(load));
    m_context.actions.assignArtwork(bytes, ids);
}

void Inspector::refuseCover()
{
    m_context.store.status().showStatus(QStringLiteral("Подождите: обложка ещё сохраняется в файл"), StatusIcon::Cover,
                                        WorkspaceStatus::Tone::Warning);
}

void Inspector::retranslate()
{
    setAccessibleName(Texts::localized(QStringLiteral("Теги")));
    m_empty->findChild<ThemeLabel*>(QStringLiteral("nothing"))
        ->setText(Texts::localized(QStringLiteral("Выберите треки, чтобы увидеть их теги")));
    m_well->retranslate();
    m_fields->retranslate();
    m_strip->retranslate();
    m_saveBar->retranslate();
    refresh();
}
