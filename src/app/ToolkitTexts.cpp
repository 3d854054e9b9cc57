#include "app/ToolkitTexts.h"

#include <QCoreApplication>
#include <QLibraryInfo>

void ToolkitTexts::setLanguage(AppLanguage language)
{
    QCoreApplication::removeTranslator(&m_translator);
    const QLocale locale(language == AppLanguage::English ? QLocale::English : QLocale::Russian);
    if (m_translator.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                          QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&m_translator);
}
