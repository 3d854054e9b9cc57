#include "ui/player/OutputMenu.h"

#include "core/library/LibraryStore.h"
#include "platform/Preferences.h"
#include "platform/audio/AudioFilePlayer.h"
#include "ui/text/Texts.h"

#include <QActionGroup>

namespace {
constexpr async::Duration kLook = async::seconds(0.2); // chosen: a device that is plugged in appears at once
}

OutputMenu::OutputMenu(const WindowContext& context, QWidget* parent)
    : QMenu(parent)
    , m_context(context)
    , m_look(context.clock, kLook, [this] {
        fill();
        m_look.start();
    })
{
    context.audio.refreshDevices();
    fill();
    m_look.start();
}

void OutputMenu::fill()
{
    Preference<QString>& preferred = m_context.store.preferences().audioOutputDevice;
    QList<AudioDevice> devices = m_context.audio.devices();
    const auto present = std::find_if(devices.begin(), devices.end(),
                                      [&](const AudioDevice& each) { return each.id == preferred.get(); });
    const QString chosen = present != devices.end() ? present->id : QString();
    devices.prepend({QString(), Texts::localized(QStringLiteral("Системное устройство"))});
    QStringList rows;
    for (const AudioDevice& each : devices)
        rows += {each.id, each.name};
    if (rows == m_shown)
        return;
    m_shown = rows;
    clear();
    auto* group = new QActionGroup(this);
    for (const AudioDevice& each : devices) {
        QString name = each.name;
        QAction* action =
            addAction(name.replace(u'&', QStringLiteral("&&")), [&preferred, id = each.id] { preferred.set(id); });
        action->setCheckable(true);
        action->setChecked(each.id == chosen);
        group->addAction(action);
        if (each.id.isEmpty() && devices.size() > 1)
            addSeparator();
    }
    if (isVisible())
        adjustSize();
}
