#include "ui/window/WaveformMenu.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "ui/text/Texts.h"
#include "ui/theme/Theme.h"
#include "ui/waveform/RowWaveforms.h"
#include "ui/waveform/WaveformColours.h"
#include "ui/waveform/WaveformDrawer.h"
#include "ui/window/MenuChoices.h"

#include <QColorDialog>
#include <QPainter>

namespace {

QString drawerTitle(WaveformDrawer drawer)
{
    switch (drawer) {
    case WaveformDrawer::Bars:
        return Texts::localized(QStringLiteral("Столбики"));
    case WaveformDrawer::LogarithmicBars:
        return Texts::localized(QStringLiteral("Столбики в децибелах"));
    case WaveformDrawer::Line:
        return Texts::localized(QStringLiteral("Ломаная"));
    case WaveformDrawer::Curve:
        return Texts::localized(QStringLiteral("Кривая"));
    case WaveformDrawer::Dots:
        return Texts::localized(QStringLiteral("Точки"));
    }
    Q_UNREACHABLE();
}

QString colourTitle(const QString& preset)
{
    if (preset == QLatin1StringView("accent"))
        return Texts::localized(QStringLiteral("Акцентный"));
    if (preset == QLatin1StringView("mint"))
        return Texts::localized(QStringLiteral("Мятный"));
    if (preset == QLatin1StringView("violet"))
        return Texts::localized(QStringLiteral("Фиолетовый"));
    if (preset == QLatin1StringView("orange"))
        return Texts::localized(QStringLiteral("Оранжевый"));
    if (preset == QLatin1StringView("rose"))
        return Texts::localized(QStringLiteral("Розовый"));
    if (preset == QLatin1StringView("custom"))
        return Texts::localized(QStringLiteral("Свой…"));
    return Texts::localized(QStringLiteral("Нейтральный"));
}

} // namespace

WaveformMenu::WaveformMenu(const WindowContext& context, QWidget* parent)
    : QMenu(parent)
    , m_context(context)
    , m_presetBefore(context.store.preferences().waveformColorPreset.get())
{
    setTitle(Texts::localized(QStringLiteral("Волна")));
    addDrawers();
    addColours();
    addHeights();
    MenuChoices::add<QString>(*this, Texts::localized(QStringLiteral("Колесо мыши над волной")),
                              context.store.preferences().waveformScrollAction,
                              {{Texts::localized(QStringLiteral("Громкость")), QStringLiteral("volume")},
                               {Texts::localized(QStringLiteral("Перемотка")), QStringLiteral("seek")}});
    addSeparator();
    addCache();
}

void WaveformMenu::addDrawers()
{
    QList<MenuChoice<QString>> choices;
    for (const WaveformDrawer drawer : kAllWaveformDrawers)
        choices.append({drawerTitle(drawer), rawValue(drawer)});
    MenuChoices::add(*this, Texts::localized(QStringLiteral("Вид волны")), m_context.store.preferences().waveformDrawer,
                     choices);
}

void WaveformMenu::addColours()
{
    QList<MenuChoice<QString>> choices;
    for (const QString& preset : WaveformColours::presets())
        choices.append({colourTitle(preset), preset});
    QMenu* menu = MenuChoices::add(*this, Texts::localized(QStringLiteral("Цвет волны")),
                                   m_context.store.preferences().waveformColorPreset, choices);
    connect(menu->actions().last(), &QAction::triggered, this, &WaveformMenu::chooseColour);
}

void WaveformMenu::addHeights()
{
    MenuChoices::add<double>(*this, Texts::localized(QStringLiteral("Высота волны")),
                             m_context.store.preferences().waveformHeight,
                             {{Texts::localized(QStringLiteral("Низкая")), 28},
                              {Texts::localized(QStringLiteral("Средняя")), 42},
                              {Texts::localized(QStringLiteral("Высокая")), 60}});
}

void WaveformMenu::addCache()
{
    m_size = addAction(cacheText(std::nullopt));
    m_size->setEnabled(false);
    // The work outlives the menu, which closes now.
    m_empty = addAction(Texts::localized(QStringLiteral("Очистить кэш волн")), &m_context.rowWaveforms,
                        &RowWaveforms::emptyCache);
    m_measuring.start([this](std::stop_token stop) { return measure(std::move(stop)); });
}

async::Task<> WaveformMenu::measure(std::stop_token stop)
{
    const EnvelopeCacheSize size = co_await m_context.waveforms.cacheSize(std::move(stop));
    m_size->setText(cacheText(size));
    m_empty->setEnabled(size.entryCount > 0);
}

QString WaveformMenu::cacheText(const std::optional<EnvelopeCacheSize>& size)
{
    const QString text =
        size ? VelmoraLocalization::locale().formattedDataSize(size->byteCount, 1, QLocale::DataSizeTraditionalFormat)
             : QStringLiteral("…");
    return VelmoraLocalization::format(QStringLiteral("Кэш волн: %@"), {text});
}

/// The menu is gone when the colour is chosen.
void WaveformMenu::chooseColour()
{
    Preferences& preferences = m_context.store.preferences();
    const QString before = m_presetBefore;
    auto* dialog = new QColorDialog(WaveformColours::custom(preferences), parentWidget()->window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(Texts::localized(QStringLiteral("Цвет волны")));
    connect(dialog, &QColorDialog::colorSelected, dialog, [&preferences](const QColor& colour) {
        preferences.waveformCustomRed.set(double(colour.redF()));
        preferences.waveformCustomGreen.set(double(colour.greenF()));
        preferences.waveformCustomBlue.set(double(colour.blueF()));
    });
    connect(dialog, &QDialog::rejected, dialog,
            [&preferences, before] { preferences.waveformColorPreset.set(before); });
    dialog->open();
}
