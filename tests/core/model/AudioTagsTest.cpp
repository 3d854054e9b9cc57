#include "core/model/AudioTags.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

AudioTags filled()
{
    return {QStringLiteral("title"), QString::fromUtf8("Артист \"🎧\"\n"),
            QStringLiteral("album"), QStringLiteral("album artist"),
            QStringLiteral("genre"), QStringLiteral("2001-02-03"),
            QStringLiteral("3/12"),  QStringLiteral("comment"),
            QStringLiteral("128,5"), QStringLiteral("8A")};
}

} // namespace

TEST(AudioTags, SerialFormHasTheTenKeys)
{
    const QJsonObject object = filled().toJson();
    const std::pair<const char*, const char*> rows[] = {
        {"title", "title"}, {"artist", "Артист \"🎧\"\n"}, {"album", "album"}, {"albumArtist", "album artist"},
        {"genre", "genre"}, {"year", "2001-02-03"},       {"track", "3/12"},  {"comment", "comment"},
        {"bpm", "128,5"},   {"musicalKey", "8A"},
    };
    EXPECT_EQ(object.size(), 10);
    for (const auto& [key, value] : rows)
        EXPECT_EQ(object.value(QLatin1StringView(key)).toString(), QString::fromUtf8(value)) << key;
}

TEST(AudioTags, SerialFormIsReadBack)
{
    for (const AudioTags& tags : {filled(), AudioTags()}) {
        const QByteArray bytes = QJsonDocument(tags.toJson()).toJson();
        EXPECT_EQ(AudioTags::fromJson(QJsonDocument::fromJson(bytes).object()), tags);
    }
    QJsonObject more = filled().toJson();
    more.insert(QStringLiteral("later"), 1);
    EXPECT_EQ(AudioTags::fromJson(more), filled());
}

TEST(AudioTags, ARecordWithAMissingOrForeignValueIsRejected)
{
    const QStringList keys = filled().toJson().keys();
    for (const QString& key : keys) {
        QJsonObject object = filled().toJson();
        object.remove(key);
        EXPECT_FALSE(AudioTags::fromJson(object)) << qPrintable(key);
        for (const QJsonValue& value : {QJsonValue(), QJsonValue(128), QJsonValue(true), QJsonValue(QJsonObject())}) {
            object.insert(key, value);
            EXPECT_FALSE(AudioTags::fromJson(object)) << qPrintable(key);
        }
    }
}

TEST(AudioTags, ComparesFieldByField)
{
    for (const AudioTags::Field& field : AudioTags::fields()) {
        AudioTags changed = filled();
        changed.*field.value += u'x';
        EXPECT_NE(changed, filled()) << field.name;
    }
}
