#include "support/StoreFixture.h"

#include "ui/inspector/InspectorModel.h"
#include "ui/inspector/SaveSummary.h"

class InspectorModelTest : public StoreFixture {
protected:
    void follow(const QList<Track>& selected) { model.follow(workspace().tracks(), ids(selected)); }

    const Track a =
        TagTexts::on(track(QStringLiteral("a.mp3")), {{&AudioTags::title, "A"}, {&AudioTags::genre, "House"}});
    const Track b =
        TagTexts::on(track(QStringLiteral("b.mp3")), {{&AudioTags::title, "B"}, {&AudioTags::genre, "House"}});
    const Track c = TagTexts::on(track(QStringLiteral("c.aac")), {{&AudioTags::title, "C"}});
    InspectorModel model;
};

TEST_F(InspectorModelTest, CommonValuesAreShownAndOthersAreMixed)
{
    fill({a, b, c});
    const struct {
        QList<Track> selected;
        QString title, genre;
        TagFields mixed;
        int writable;
    } kCases[]{
        {{a}, QStringLiteral("A"), QStringLiteral("House"), {}, 1},
        {{a, b}, {}, QStringLiteral("House"), TagField::Title, 2},
        {{a, b, c}, {}, {}, TagFields(TagField::Title) | TagField::Genre, 2},
        {{}, {}, {}, {}, 0},
    };
    for (const auto& each : kCases) {
        follow(each.selected);
        EXPECT_EQ(model.text(TagField::Title), each.title);
        EXPECT_EQ(model.text(TagField::Genre), each.genre);
        TagFields mixed;
        for (TagField field : TagFieldSet::list())
            mixed.setFlag(field, model.isMixed(field));
        EXPECT_EQ(mixed, each.mixed);
        EXPECT_EQ(model.writableIDs().size(), each.writable);
        EXPECT_EQ(model.writableCount(), each.writable);
        EXPECT_EQ(model.single().has_value(), each.selected.size() == 1);
    }
}

TEST_F(InspectorModelTest, OnlyWhatDiffersIsTouched)
{
    fill({a, b});
    follow({a});
    model.edit(TagField::Title, QStringLiteral("A2"));
    EXPECT_EQ(model.touched(), TagFields(TagField::Title));
    model.edit(TagField::Title, QStringLiteral("A"));
    EXPECT_FALSE(model.touched()) << "typed back";
    model.edit(TagField::Genre, QString());
    EXPECT_EQ(model.touched(), TagFields(TagField::Genre)) << "a field can be cleared";
    model.revert(TagField::Genre);
    EXPECT_EQ(model.text(TagField::Genre), QStringLiteral("House"));
    follow({a, b});
    model.edit(TagField::Title, QString());
    EXPECT_EQ(model.touched(), TagFields(TagField::Title)) << "different titles can be cleared";
    EXPECT_EQ(model.edited().genre, QStringLiteral("House"));
}

TEST_F(InspectorModelTest, EditsHoldTheirTracks)
{
    fill({a, b, c});
    follow({a});
    model.edit(TagField::Title, QStringLiteral("A2"));
    follow({b});
    EXPECT_EQ(model.ids(), ids({a}));
    EXPECT_TRUE(model.isPinned());
    EXPECT_EQ(model.text(TagField::Genre), QStringLiteral("House")) << "the values beside are still its own";
    follow({a});
    EXPECT_FALSE(model.isPinned());
    model.revertAll();
    follow({b});
    EXPECT_EQ(model.ids(), ids({b}));
}

TEST_F(InspectorModelTest, EditsEndWithTheirLastTrack)
{
    fill({a, b, c});
    follow({a, b});
    model.edit(TagField::Album, QStringLiteral("#WARM UP"));
    fill({b, c});
    follow({c});
    EXPECT_EQ(model.ids(), ids({b}));
    EXPECT_EQ(model.touched(), TagFields(TagField::Album));
    fill({c});
    follow({c});
    EXPECT_EQ(model.ids(), ids({c}));
    EXPECT_FALSE(model.touched());
}

TEST_F(InspectorModelTest, LaterValuesComeInAroundTheEdits)
{
    fill({a, b});
    follow({a});
    model.edit(TagField::Title, QStringLiteral("A2"));
    replace(a, {{&AudioTags::title, "read"}, {&AudioTags::genre, "Techno"}});
    follow({a});
    EXPECT_EQ(model.text(TagField::Title), QStringLiteral("A2"));
    EXPECT_EQ(model.text(TagField::Genre), QStringLiteral("Techno"));
    replace(a, {{&AudioTags::title, "A2"}});
    follow({b});
    EXPECT_FALSE(model.touched()) << "the file says by now what was typed";
    EXPECT_EQ(model.ids(), ids({b}));
}

TEST_F(InspectorModelTest, CoversOfDifferentPicturesAreStacked)
{
    QList<Track> tracks;
    for (const char* picture : {"one", "", "two", "one", "three", "four"}) {
        Track each = track(QStringLiteral("%1.mp3").arg(tracks.size()));
        each.replaceArtwork(ArtworkData::intern(picture), {});
        tracks.append(each);
    }
    fill(tracks);
    follow(tracks);
    ASSERT_EQ(model.covers().size(), InspectorModel::kCovers);
    EXPECT_EQ(model.covers()[0].id(), tracks[0].id());
    EXPECT_EQ(model.covers()[1].id(), tracks[2].id());
    EXPECT_EQ(model.covers()[2].id(), tracks[4].id());
}

TEST_F(InspectorModelTest, TheFileAnswersForFieldsThatNoReadSupplies)
{
    fill({TagTexts::on(a, {{&AudioTags::bpm, "128"}}), b});
    follow({a});
    TagInventory inventory;
    inventory.unread.year = QStringLiteral("2019");
    inventory.unread.bpm = QStringLiteral("127");
    inventory.unwritable = TagField::MusicalKey;
    model.setInventory(inventory);
    EXPECT_EQ(model.inFile(TagField::Year), QStringLiteral("2019"));
    EXPECT_EQ(model.inFile(TagField::Tempo), QString()) << "the row has a value of its own";
    EXPECT_TRUE(model.isUnwritable(TagField::MusicalKey));
    follow({a, b});
    EXPECT_EQ(model.inFile(TagField::Year), QString()) << "several tracks have no common file";
    EXPECT_FALSE(model.isUnwritable(TagField::MusicalKey));
}

TEST_F(InspectorModelTest, FormatsDecideWhatCanBeWritten)
{
    const struct {
        const char* name;
        bool tags, picture;
    } kCases[]{{"a.mp3", true, true}, {"a.FLAC", true, true}, {"a.wav", true, true},   {"a.aiff", true, true},
               {"a.AIF", true, true}, {"a.m4a", true, false}, {"a.aac", false, false}, {"a.ogg", false, false}};
    for (const auto& each : kCases) {
        const Track written = track(QString::fromLatin1(each.name));
        EXPECT_EQ(InspectorModel::isWritable(written), each.tags) << each.name;
        EXPECT_EQ(InspectorModel::takesPicture(written), each.picture) << each.name;
    }
}

TEST_F(InspectorModelTest, TheSummarySaysWhatASaveTakesAway)
{
    const Track withYear = TagTexts::on(a, {{&AudioTags::year, "2020"}});
    fill({withYear, b, c});
    TagInventory bare, pictured, full, unknown;
    unknown.isUnknown = true;
    pictured.hasPicture = true;
    full.hasPicture = true;
    full.otherEntries = 2;
    full.unread.year = QStringLiteral("2019");
    full.unread.albumArtist = QStringLiteral("V.A.");
    full.unwritable = TagField::MusicalKey;
    const struct {
        QList<Track> selected;
        std::optional<TagInventory> inventory;
        bool keeps;
        const char* text;
    } kCases[]{
        {{}, {}, false, ""},
        {{b}, {}, false, ""},
        {{b}, bare, false, "В файле нет ничего лишнего"},
        {{b}, pictured, false, "Сохранение удалит обложку"},
        {{b}, full, false, "Сохранение удалит обложку и 5 других полей"},
        {{withYear}, full, false, "Сохранение удалит обложку и 4 других поля"},
        {{b}, full, true, "Обложка и прочие поля файла останутся"},
        {{a, b}, {}, true, "Обложки и прочие поля файлов останутся"},
        {{a, b}, {}, false, "Сохранение удалит обложки и прочие поля"},
        {{b}, unknown, false, "Теги файла прочитаны не полностью: сохранение перезапишет их"},
        {{b}, unknown, true, "Обложка и прочие поля файла останутся"},
        {{a, c}, {}, false, "Теги можно записать в 1 из 2 файлов. Сохранение удалит обложки и прочие поля"},
        {{a, c}, {}, true, "Теги можно записать в 1 из 2 файлов. Обложки и прочие поля файлов останутся"},
        {{c}, {}, true, "Теги в файлах этого формата изменить нельзя"},
    };
    for (const auto& each : kCases) {
        follow(each.selected);
        model.setInventory(each.inventory);
        EXPECT_EQ(SaveSummary::text(model, each.keeps), QString::fromUtf8(each.text));
    }
    follow({b});
    model.setInventory(full);
    model.edit(TagField::Year, QStringLiteral("2021"));
    EXPECT_EQ(SaveSummary::text(model, false), QStringLiteral("Сохранение удалит обложку и 4 других поля"))
        << "a year that is typed is written";
}
