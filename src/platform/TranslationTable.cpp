#include "platform/TranslationTable.h"

#include <QtGlobal>

// Outside of any namespace, as the macro demands. A static library's resources register only when they are named.
static void registerTranslations()
{
    Q_INIT_RESOURCE(velmora_translations);
}

namespace {

constexpr char kContext[] = "Velmora";
constexpr int kNoCount = -1;

void load(QTranslator& translator, const QString& name)
{
    if (!translator.load(QStringLiteral(":/i18n/%1.qm").arg(name)))
        qCritical("the texts %s are not part of this program", qPrintable(name));
}

} // namespace

TranslationTable::TranslationTable(const QString& language)
{
    registerTranslations();
#ifndef Q_OS_MACOS
    load(m_system, QStringLiteral("velmora_system_") + language);
#endif
    load(m_language, QStringLiteral("velmora_") + language);
}

QString TranslationTable::look(const QString& key, int count) const
{
    const QByteArray bytes = key.toUtf8();
    QString found = m_system.translate(kContext, bytes.constData(), nullptr, count);
    if (found.isEmpty())
        found = m_language.translate(kContext, bytes.constData(), nullptr, count);
    return found.isEmpty() ? key : found;
}

QString TranslationTable::text(const QString& key) const
{
    {
        const QReadLocker reading(&m_lock);
        const auto known = m_texts.constFind(key);
        if (known != m_texts.constEnd())
            return *known;
    }
    const QString found = look(key, kNoCount);
    const QWriteLocker writing(&m_lock);
    m_texts.insert(key, found);
    return found;
}

QString TranslationTable::pluralText(const QString& key, qint64 count) const
{
    // The plural rules of both languages look at the last two digits; the rest only has to stay large.
    constexpr qint64 kLarge = 1'000'000;
    const quint64 size = count < 0 ? 0 - static_cast<quint64>(count) : static_cast<quint64>(count);
    return look(key, static_cast<int>(size < kLarge ? size : kLarge + size % kLarge));
}
