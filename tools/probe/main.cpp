#include "Commands.h"
#include "Output.h"

#include "platform/Localization.h"

#include <QCoreApplication>

namespace {

struct Command {
    QLatin1StringView name;
    QLatin1StringView usage;
    ExitStatus (*run)(const QStringList& arguments);
};

constexpr Command kCommands[] = {
    {QLatin1StringView("tags"), QLatin1StringView("tags FILE..."), &Commands::tags},
    {QLatin1StringView("fallback"), QLatin1StringView("fallback < NAMES"), &Commands::fallback},
    {QLatin1StringView("import"), QLatin1StringView("import FOLDER..."), &Commands::import},
    {QLatin1StringView("pcm"), QLatin1StringView("pcm FILE --rate R [--max S] --out RAW"), &Commands::pcm},
    {QLatin1StringView("key"), QLatin1StringView("key FILE... [--raw]"), &Commands::key},
    {QLatin1StringView("camelot"), QLatin1StringView("camelot < REQUESTS"), &Commands::camelot},
    {QLatin1StringView("tempo"), QLatin1StringView("tempo FILE... [--low-impact] [--raw]"), &Commands::tempo},
    {QLatin1StringView("waveform"), QLatin1StringView("waveform FILE... [--direct]"), &Commands::waveform},
    {QLatin1StringView("resample"), QLatin1StringView("resample < REQUESTS"), &Commands::resample},
    {QLatin1StringView("write"), QLatin1StringView("write FILE --tags JSON [--keep] [--vault FOLDER]"),
     &Commands::write},
    {QLatin1StringView("artwork"), QLatin1StringView("artwork FILE IMAGE --tags JSON [--vault FOLDER]"),
     &Commands::artwork},
    {QLatin1StringView("clean"), QLatin1StringView("clean FILE --fields N [--title T] [--album A] [--vault FOLDER]"),
     &Commands::clean},
    {QLatin1StringView("restore"), QLatin1StringView("restore FILE [--vault FOLDER]"), &Commands::restore},
    {QLatin1StringView("session"), QLatin1StringView("session FILE"), &Commands::session},
    {QLatin1StringView("id3"), QLatin1StringView("id3 --tags JSON [--artwork IMAGE]"), &Commands::id3},
    {QLatin1StringView("sort"), QLatin1StringView("sort < REQUESTS"), &Commands::sort},
    {QLatin1StringView("favorites-order"), QLatin1StringView("favorites-order < REQUESTS"), &Commands::favoritesOrder},
};

/// Takes "--language ru|en" out of the arguments. \return whether it made sense.
bool takeLanguage(QStringList& arguments)
{
    VelmoraLocalization::setLanguage(AppLanguage::Russian);
    const qsizetype option = arguments.indexOf(QStringLiteral("--language"));
    if (option < 0)
        return true;
    const QString language = arguments.value(option + 1);
    if (language != QLatin1StringView("ru") && language != QLatin1StringView("en"))
        return false;
    VelmoraLocalization::setLanguage(appLanguageFromRawValue(language));
    arguments.remove(option, 2);
    return true;
}

int explainUsage()
{
    for (const Command& command : kCommands)
        Output::diagnose(QStringLiteral("usage: velmora-probe [--language ru|en] ") + command.usage);
    return static_cast<int>(ExitStatus::Usage);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv);
    QStringList arguments = QCoreApplication::arguments().sliced(1);
    if (!takeLanguage(arguments) || arguments.isEmpty())
        return explainUsage();
    const QString name = arguments.takeFirst();
    for (const Command& command : kCommands) {
        if (name != command.name)
            continue;
        const ExitStatus status = command.run(arguments);
        return status == ExitStatus::Usage ? explainUsage() : static_cast<int>(status);
    }
    return explainUsage();
}
