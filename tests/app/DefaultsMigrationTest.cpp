#include "app/DefaultsMigration.h"
#include "platform/Preferences.h"

#include <gtest/gtest.h>

TEST(DefaultsMigrationTest, TakesOldValuesOverOnce)
{
    MemoryPreferenceStore old;
    old.set(QStringLiteral("seekStep"), 5);
    old.set(QStringLiteral("nimbrel.playlistScrollOffset.v1"), 77);
    old.set(QStringLiteral("NimbrelThing"), 1);
    old.set(QStringLiteral("NIMBREL_X"), 2);
    old.set(QStringLiteral("appAppearance"), QStringLiteral("light"));
    Preferences preferences(std::make_unique<MemoryPreferenceStore>());
    preferences.appAppearance.set(QStringLiteral("dark"));

    DefaultsMigration::migrateLegacyDefaults(MemoryPreferenceStore(), preferences);
    EXPECT_FALSE(preferences.defaultsMigrated.get()) << "an empty domain is tried again at the next start";
    DefaultsMigration::migrateLegacyDefaults(old, preferences);
    EXPECT_EQ(preferences.seekStep.get(), 5);
    EXPECT_EQ(preferences.playlistScrollOffset.get(), 77);
    EXPECT_EQ(preferences.appAppearance.get(), QStringLiteral("dark")) << "existing values win";
    EXPECT_TRUE(preferences.store().contains(QStringLiteral("VelmoraThing")));
    EXPECT_TRUE(preferences.store().contains(QStringLiteral("VELMORA_X")));
    EXPECT_TRUE(preferences.defaultsMigrated.get());

    old.set(QStringLiteral("seekStep"), 30);
    preferences.seekStep.remove();
    DefaultsMigration::migrateLegacyDefaults(old, preferences);
    EXPECT_FALSE(preferences.seekStep.isSet()) << "only once";
}
