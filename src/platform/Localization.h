#pragma once

#include <QLocale>
#include <QString>
#include <QVariant>

/// The languages of the interface; raw values "ru" and "en" stand in the preference `appLanguage`.
enum class AppLanguage { Russian, English };

/// The text that the preference keeps.
QString rawValue(AppLanguage language);
/// Russian for an unknown value.
AppLanguage appLanguageFromRawValue(const QString& raw);

/// Texts of the interface. A Russian text is the key of its translation. Thread: main for setLanguage, any for the
/// rest.
namespace VelmoraLocalization {

/// The present one: Russian until setLanguage() is called.
AppLanguage language();
/// Switches at once; what shows texts redraws on Notifications::velmoraLanguageDidChange.
void setLanguage(AppLanguage language);
/// Locale "ru" or "en" of the language, for numbers and counted messages.
QLocale locale();

/// The text for a key in the present language, in the wording of the present system. A key without translation is
/// returned as it is.
QString string(const QString& key);
/// string(key) with its placeholders filled in order: "%d" by a number in the locale's form with digit grouping, "%@"
/// by a text. Too few arguments leave the placeholder standing.
QString format(const QString& key, std::initializer_list<QVariant> arguments);
/// The counted form of a key that contains "%n", by the language's plural rule and number form, e.g. "1 248 треков".
/// A key without translation is used as it is.
QString plural(const QString& key, qint64 count);

} // namespace VelmoraLocalization
