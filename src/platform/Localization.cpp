#include "platform/Localization.h"

#include "platform/TranslationTable.h"

#include <QtGlobal>

#include <atomic>

QString rawValue(AppLanguage language)
{
    return language == AppLanguage::English ? QStringLiteral("en") : QStringLiteral("ru");
}

AppLanguage appLanguageFromRawValue(const QString& raw)
{
    return raw == QLatin1StringView("en") ? AppLanguage::English : AppLanguage::Russian;
}

namespace VelmoraLocalization {

namespace {

struct Language {
    AppLanguage language;
    QLocale locale;
    TranslationTable table;

    explicit Language(AppLanguage value)
        : language(value)
        , locale(rawValue(value))
        , table(rawValue(value))
    {
    }
};

const Language& languageOf(AppLanguage language)
{
    // Made once and never destroyed: texts are asked for from static objects and worker threads until the very end.
    static const Language* const kRussian = new Language(AppLanguage::Russian);
    static const Language* const kEnglish = new Language(AppLanguage::English);
    return language == AppLanguage::English ? *kEnglish : *kRussian;
}

std::atomic<const Language*>& presentLanguage()
{
    static std::atomic<const Language*> present{&languageOf(AppLanguage::Russian)};
    return present;
}

const Language& present()
{
    return *presentLanguage().load(std::memory_order_acquire);
}

bool isNumber(const QVariant& value)
{
    switch (value.typeId()) {
    case QMetaType::Int:
    case QMetaType::UInt:
    case QMetaType::Long:
    case QMetaType::ULong:
    case QMetaType::LongLong:
    case QMetaType::ULongLong:
        return true;
    default:
        return false;
    }
}

QString argumentText(const QVariant& value, const QLocale& locale)
{
    return isNumber(value) ? locale.toString(value.toLongLong()) : value.toString();
}

} // namespace

AppLanguage language()
{
    return present().language;
}

void setLanguage(AppLanguage language)
{
    presentLanguage().store(&languageOf(language), std::memory_order_release);
}

QLocale locale()
{
    return present().locale;
}

QString string(const QString& key)
{
    return present().table.text(key);
}

QString format(const QString& key, std::initializer_list<QVariant> arguments)
{
    const Language& language = present();
    const QString text = language.table.text(key);
    QString result;
    auto argument = arguments.begin();
    qsizetype done = 0;
    // One pass over the text, so that a placeholder inside an argument stays what it is.
    for (qsizetype place = text.indexOf(u'%'); place >= 0 && argument != arguments.end();
         place = text.indexOf(u'%', place + 1)) {
        const QChar kind = place + 1 < text.size() ? text.at(place + 1) : QChar();
        if (kind != u'd' && kind != u'@')
            continue;
        result += QStringView(text).sliced(done, place - done);
        result += argumentText(*argument++, language.locale);
        done = place + 2;
    }
    return result.append(QStringView(text).sliced(done));
}

QString plural(const QString& key, qint64 count)
{
    const Language& language = present();
    QString text = language.table.pluralText(key, count);
    return text.replace(QLatin1StringView("%n"), language.locale.toString(count));
}

} // namespace VelmoraLocalization
