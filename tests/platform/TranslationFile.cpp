#include "TranslationFile.h"

#include <QFile>
#include <QXmlStreamReader>
#include <gtest/gtest.h>

#include <algorithm>

namespace {

void readTranslation(QXmlStreamReader& xml, TranslationFile::Message& message)
{
    const QStringView type = xml.attributes().value(QLatin1StringView("type"));
    message.isVanished = type == QLatin1StringView("vanished") || type == QLatin1StringView("obsolete");
    message.isFinished = type.isEmpty();
    if (!message.isCounted) {
        message.forms.append(xml.readElementText());
        return;
    }
    while (xml.readNextStartElement())
        message.forms.append(xml.readElementText());
}

TranslationFile::Message readMessage(QXmlStreamReader& xml)
{
    TranslationFile::Message message;
    message.isCounted = xml.attributes().value(QLatin1StringView("numerus")) == QLatin1StringView("yes");
    while (xml.readNextStartElement()) {
        if (xml.name() == QLatin1StringView("source"))
            message.key = xml.readElementText();
        else if (xml.name() == QLatin1StringView("translation"))
            readTranslation(xml, message);
        else
            xml.skipCurrentElement();
    }
    return message;
}

} // namespace

TranslationFile TranslationFile::read(const QString& name)
{
    TranslationFile result{name, {}};
    QFile file(QStringLiteral(VELMORA_SOURCE_DIR "/resources/i18n/") + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << qPrintable(name);
    QXmlStreamReader xml(&file);
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::StartElement && xml.name() == QLatin1StringView("message"))
            result.messages.append(readMessage(xml));
    }
    EXPECT_FALSE(xml.hasError()) << qPrintable(name) << ": " << qPrintable(xml.errorString());
    return result;
}

const TranslationFile::Message* TranslationFile::find(const QString& key) const
{
    const auto found = std::ranges::find(messages, key, &Message::key);
    return found == messages.end() ? nullptr : &*found;
}
