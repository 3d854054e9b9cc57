#include "core/library/session/SessionCoding.h"

#include "platform/json/JsonReader.h"
#include "platform/json/StoredForms.h"
#include "support/SessionSamples.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {

using SessionCoding::Counts;

const QByteArray kID = "0A1B2C3D-4E5F-6071-8293-A4B5C6D7E8F9";

/// A session with something under every key.
SessionRecord fullRecord()
{
    SessionRecord record = SessionSamples::withRows(2, 1, QStringLiteral("/музыка/100% #1; a?b"));
    const TrackID id = record.tracks[0].id();
    record.selectedID = id;
    record.selectedIDs = {id, record.tracks[1].id()};
    record.tabSelectionIDs = {{{QStringLiteral("Плейлист"), {id}}, {QStringLiteral("Новое \"имя\""), {}}}};
    record.tabFocusedIDs = {{{QStringLiteral("Плейлист"), id}}};
    record.resumeTrackID = record.tracks[1].id();
    record.conversionURLs = {FileURL::fromPath(QStringLiteral("/c/é.wav"))};
    record.analysisTracks = SessionSamples::withRows(1).tracks;
    record.keyAnalysisTracks = SessionSamples::withRows(1).tracks;
    record.duplicateTracks = SessionSamples::withRows(1).tracks;
    record.duplicateRoots = {FileURL::fromPath(QStringLiteral("/roots"))};
    record.musicalKeyAnalyses = {{id,
                                  {{11, MusicalKeyMode::Major},
                                   0.75,
                                   -33.333333333333336,
                                   {{{4, MusicalKeyMode::Minor}, 0.5}, {{0, MusicalKeyMode::Major}, 1e-9}}}}};
    record.tempo.estimatedBPMByTrackID = {{id, QStringLiteral("128")}};
    record.tempo.estimatedBPMConfidenceByTrackID = {{id, 0.1 + 0.2}};
    record.tempo.estimatedBPMByFile = {
        {QStringLiteral("/музыка/a\\b.mp3"), {QStringLiteral("127,5"), 0.9, 9'007'199'254'740'993, 700000000.123456}}};
    record.playlistScrollOffset = 1234.5;
    return record;
}

bool isSame(const QList<Track>& left, const QList<Track>& right)
{
    return std::ranges::equal(left, right, [](const Track& a, const Track& b) {
        return a.id() == b.id() && a.url() == b.url() && a.tags() == b.tags() && a.isFavorite() == b.isFavorite() &&
               a.isInPlaylist() == b.isInPlaylist() && a.isInCoverWorkspace() == b.isInCoverWorkspace();
    });
}

void expectSame(const SessionRecord& left, const SessionRecord& right)
{
    EXPECT_TRUE(isSame(left.tracks, right.tracks));
    EXPECT_TRUE(isSame(left.analysisTracks, right.analysisTracks));
    EXPECT_TRUE(isSame(left.keyAnalysisTracks, right.keyAnalysisTracks));
    EXPECT_TRUE(isSame(left.duplicateTracks, right.duplicateTracks));
    EXPECT_EQ(left.selectedID, right.selectedID);
    EXPECT_EQ(left.selectedIDs, right.selectedIDs);
    EXPECT_EQ(left.activeTab, right.activeTab);
    EXPECT_EQ(left.tabSelectionIDs, right.tabSelectionIDs);
    EXPECT_EQ(left.tabFocusedIDs, right.tabFocusedIDs);
    EXPECT_EQ(left.resumeTrackID, right.resumeTrackID);
    EXPECT_EQ(left.conversionURLs, right.conversionURLs);
    EXPECT_EQ(left.duplicateRoots, right.duplicateRoots);
    EXPECT_EQ(left.musicalKeyAnalyses, right.musicalKeyAnalyses);
    EXPECT_EQ(left.tempo, right.tempo);
    EXPECT_EQ(left.playlistScrollOffset, right.playlistScrollOffset);
}

/// The smallest readable session as an independent parser sees it.
QJsonObject smallest()
{
    QJsonObject tags;
    for (const AudioTags::Field& field : AudioTags::fields())
        tags.insert(QLatin1StringView(field.name), QString());
    const QJsonObject track{{QStringLiteral("id"), QString::fromLatin1(kID)},
                            {QStringLiteral("url"), QStringLiteral("file:///a%20b.mp3")},
                            {QStringLiteral("tags"), tags},
                            {QStringLiteral("isFavorite"), true},
                            {QStringLiteral("isInPlaylist"), false},
                            {QStringLiteral("isInCoverWorkspace"), false}};
    return {{QStringLiteral("tracks"), QJsonArray{track}},
            {QStringLiteral("selectedIDs"), QJsonArray{}},
            {QStringLiteral("activeTab"), QStringLiteral("Плейлист")},
            {QStringLiteral("conversionURLs"), QJsonArray{}},
            {QStringLiteral("duplicateRoots"), QJsonArray{}},
            {QStringLiteral("duplicateTracks"), QJsonArray{}}};
}

std::optional<SessionRecord> decoded(const QJsonObject& object)
{
    return SessionCoding::decode(QJsonDocument(object).toJson());
}

} // namespace

TEST(SessionCoding, WhatIsWrittenReadsBackTheSame)
{
    const SessionRecord record = fullRecord();
    const QByteArray bytes = SessionCoding::encode(record);
    QJsonParseError error;
    QJsonDocument::fromJson(bytes, &error);
    EXPECT_EQ(error.error, QJsonParseError::NoError) << "another reader takes it for JSON";
    const std::optional<SessionRecord> again = SessionCoding::decode(bytes);
    ASSERT_TRUE(again);
    expectSame(record, *again);
    EXPECT_FALSE(again->tracks[0].isRead());
    EXPECT_EQ(again->tracks[0].format(), QStringLiteral("MP3"));
    EXPECT_EQ(SessionCoding::counts(bytes), (Counts{2, 1}));
}

TEST(SessionCoding, FormsOnDisk)
{
    SessionRecord record = SessionSamples::withRows(0);
    const TrackID id = *StoredForms::uuidFromText(kID);
    Track track = Track::restored(id, FileURL::fromPath(QStringLiteral("/ж 1%;.mp3")), AudioTags());
    record.tracks = {track};
    record.selectedID = id;
    record.tempo.estimatedBPMByTrackID = {{id, QStringLiteral("128")}};
    record.tempo.estimatedBPMByFile = {{QStringLiteral("/a"), {QStringLiteral("99"), 0.5, 7, 0.25}}};
    record.musicalKeyAnalyses = {{id, {{9, MusicalKeyMode::Minor}, 1, 0, {}}}};
    EXPECT_EQ(SessionCoding::encode(record),
              QByteArray(R"({"tracks":[{"id":"ID","url":"file:///%D0%B6%201%25%3B.mp3","tags":{"title":"","artist":"",)"
                         R"("album":"","albumArtist":"","genre":"","year":"","track":"","comment":"","bpm":"",)"
                         R"("musicalKey":""},"isFavorite":false,"isInPlaylist":false,"isInCoverWorkspace":false}],)"
                         R"("selectedID":"ID","selectedIDs":[],"activeTab":"Плейлист","conversionURLs":[],)"
                         R"("analysisTracks":[],"keyAnalysisTracks":[],"musicalKeyAnalyses":["ID",{"key":)"
                         R"({"pitchClass":9,"mode":"minor"},"confidence":1,"tuningCents":0,"alternatives":[]}],)"
                         R"("duplicateRoots":[],"duplicateTracks":[],"estimatedBPMByTrackID":["ID","128"],)"
                         R"("estimatedBPMConfidenceByTrackID":[],"estimatedBPMByFile":{"/a":{"bpm":"99",)"
                         R"("confidence":0.5,"byteCount":7,"modificationDate":0.25}}})")
                  .replace("ID\"", kID + '"')
                  .replace("selected" + kID, "selectedID")
                  .replace("ByTrack" + kID, "ByTrackID"));
}

TEST(SessionCoding, RequiredKeysDecide)
{
    ASSERT_TRUE(decoded(smallest()));
    EXPECT_TRUE(decoded(smallest())->tracks[0].isInCoverWorkspace()) << "a favourite is in Covers";
    const auto with = [](QJsonObject object, const QString& key, const QJsonValue& value) {
        object.insert(key, value);
        return object;
    };
    const auto without = [](QJsonObject object, const QString& key) {
        object.remove(key);
        return object;
    };
    for (const QString& key : smallest().keys()) {
        EXPECT_FALSE(decoded(without(smallest(), key))) << qPrintable(key);
        EXPECT_FALSE(decoded(with(smallest(), key, QJsonValue()))) << qPrintable(key);
    }
    const QString tracks = QStringLiteral("tracks");
    const QJsonObject track = smallest()[tracks].toArray()[0].toObject();
    const auto withTrack = [&](const QJsonObject& changed) { return with(smallest(), tracks, QJsonArray{changed}); };
    for (const QString& key : track.keys())
        EXPECT_FALSE(decoded(withTrack(without(track, key)))) << qPrintable(key);
    const QString tags = QStringLiteral("tags");
    for (const AudioTags::Field& field : AudioTags::fields()) {
        const QJsonObject fewer = without(track[tags].toObject(), QLatin1StringView(field.name));
        EXPECT_FALSE(decoded(withTrack(with(track, tags, fewer)))) << field.name;
    }
}

TEST(SessionCoding, OptionalKeysOfAnotherType)
{
    struct Case {
        const char* key;
        QJsonValue value;
        bool isReadable;
    };
    const QJsonArray oddLength{QString::fromLatin1(kID)};
    const Case cases[] = {
        {"later", QJsonObject{{QStringLiteral("a"), QJsonArray{1, QJsonValue(), true}}}, true},
        {"selectedID", QJsonValue(), true},
        {"selectedID", QStringLiteral("no id"), false},
        {"selectedID", QString::fromLatin1(kID.toLower()), true},
        {"analysisTracks", QJsonObject(), false},
        {"playlistScrollOffset", QStringLiteral("1"), false},
        {"estimatedBPMByTrackID", oddLength, false},
        {"estimatedBPMByTrackID", QJsonArray{QString::fromLatin1(kID), 128}, false},
        {"estimatedBPMByFile", QJsonObject{{QStringLiteral("/a"), QJsonObject()}}, false},
        {"tabSelectionIDs", QJsonObject{{QStringLiteral("Плейлист"), QJsonArray{1}}}, false},
    };
    for (const Case& own : cases) {
        QJsonObject session = smallest();
        session.insert(QLatin1StringView(own.key), own.value);
        EXPECT_EQ(decoded(session).has_value(), own.isReadable) << own.key;
    }
}

TEST(SessionCoding, JsonIsReadStrictly)
{
    const auto nested = [](int depth) { return QByteArray(depth, '[') + QByteArray(depth, ']'); };
    for (const QByteArray& text :
         {QByteArray(" \n[1,-0.5e+3,\"\\u00e9\\/\",null,true,{}] "), nested(JsonReader::kMaximumDepth)})
        EXPECT_TRUE(JsonReader::isValid(text)) << text.left(60).constData();
    const QByteArray broken =
        "|[1,]|[1 2]|{\"a\":1,}|{a:1}|[01]|[.5]|[1.]|[+1]|[NaN]|[tru]|[] []|\"\x01\"|\"\\x\"|\"\\u12g4\"|"
        "\"\\u12|\"abc|\"\\|\"\xc0\xaf\"|\"\xed\xa0\x80\"|\"\xf4\x90\x80\x80\"|\"1234567\xd0\"";
    for (const QByteArray& text : broken.split('|'))
        EXPECT_FALSE(JsonReader::isValid(text)) << text.constData();
    EXPECT_FALSE(JsonReader::isValid(nested(JsonReader::kMaximumDepth + 1)));
    EXPECT_FALSE(JsonReader::isValid(QByteArray(1'000'000, '[')));
}

TEST(SessionCoding, EveryTruncationIsUnreadable)
{
    const QByteArray bytes = SessionCoding::encode(fullRecord());
    for (qsizetype size = 0; size < bytes.size(); ++size) {
        EXPECT_FALSE(SessionCoding::decode(QByteArrayView(bytes).first(size))) << size;
        EXPECT_FALSE(SessionCoding::counts(QByteArrayView(bytes).first(size))) << size;
    }
}

TEST(SessionCoding, CountsOfForeignFiles)
{
    const struct {
        QByteArray text;
        std::optional<Counts> counts;
    } cases[] = {
        {"{}", std::nullopt},
        {"[]", std::nullopt},
        {R"({"tracks":{}})", std::nullopt},
        {R"({"tracks":[]})", Counts{0, 0}},
        {R"({"a":{"tracks":[{}]},"tracks":[{"isFavorite":true},{"isFavorite":false},{}]})", Counts{3, 1}},
        {R"({"tracks":[{"isFavorite":true,"tags":{"isFavorite":true}}]} x)", std::nullopt},
    };
    for (const auto& own : cases)
        EXPECT_EQ(SessionCoding::counts(own.text), own.counts) << own.text.constData();
}

TEST(SessionCoding, URLTexts)
{
    const std::pair<QByteArray, QString> cases[] = {
        {"file:///a%2Fb", QStringLiteral("/a/b")},
        {"file:///%D0%B6", QStringLiteral("/ж")},
        {"file:///ж%25", QStringLiteral("/ж%")},
        {"file://localhost/a", QStringLiteral("/a")},
    };
    for (const auto& [text, path] : cases)
        EXPECT_EQ(StoredForms::urlFromText(text).value_or(QUrl()).path(QUrl::FullyDecoded), path) << text.constData();
    for (const char* refused :
         {"file:///a%", "file:///a%4", "file:///a%zz", "file:///a%00b", "file:///a?b", "/a/b", ""})
        EXPECT_FALSE(StoredForms::urlFromText(refused)) << refused;
}
