#include "platform/power/PowerState.h"
#include "platform/power/ResourceWatch.h"

#include "async/MainQueue.h"
#include "support/Machine.h"
#include "support/ManualClock.h"
#include "support/ManualExecutor.h"

#include <QHash>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {

/// A folder as the kernel shows it: contents by path.
using Tree = QHash<QString, QByteArray>;

void build(const QString& root, const Tree& tree)
{
    for (auto entry = tree.cbegin(); entry != tree.cend(); ++entry)
        writeFile(root + u'/' + entry.key(), *entry);
}

Tree battery(const QByteArray& status, const QByteArray& capacity)
{
    const QString folder = QStringLiteral("class/power_supply/BAT0/");
    return {{folder + QStringLiteral("type"), "Battery\n"},
            {folder + QStringLiteral("status"), status},
            {folder + QStringLiteral("capacity"), capacity}};
}

/// A zone with a trip point that is of no account before the one given.
Tree zone(const QByteArray& heat, const QByteArray& type, const QByteArray& limit)
{
    const QString folder = QStringLiteral("class/thermal/thermal_zone3/");
    return {{folder + QStringLiteral("temp"), heat},
            {folder + QStringLiteral("trip_point_0_type"), "passive\n"},
            {folder + QStringLiteral("trip_point_0_temp"), "40000\n"},
            {folder + QStringLiteral("trip_point_1_type"), type},
            {folder + QStringLiteral("trip_point_1_temp"), limit}};
}

Tree with(Tree tree, const QString& path, const QByteArray& content)
{
    tree.insert(path, content);
    return tree;
}

} // namespace

TEST(PowerStateTest, SeesLowBatteriesSavingAndHeat)
{
    const QString scope = QStringLiteral("class/power_supply/BAT0/scope");
    const QString profile = QStringLiteral("firmware/acpi/platform_profile");
    const std::tuple<const char*, Tree, bool> cases[] = {
        {"a machine that tells nothing", {}, false},
        {"low", battery("Discharging\n", "19\n"), true},
        {"a fifth", battery("Discharging\n", "20\n"), false},
        {"low at the mains", battery("Charging\n", "5\n"), false},
        {"full at the mains", battery("Not charging\n", "5\n"), false},
        {"of a mouse", with(battery("Discharging\n", "5\n"), scope, "Device\n"), false},
        {"of the machine", with(battery("Discharging\n", "5\n"), scope, "System\n"), true},
        {"no number", battery("Discharging\n", "low\n"), false},
        {"told to save", {{profile, "low-power\n"}}, true},
        {"balanced", {{profile, "balanced\n"}}, false},
        {"cool", zone("95000\n", "critical\n", "100000\n"), false},
        {"nearly critical", zone("95001\n", "critical\n", "100000\n"), true},
        {"nearly hot", zone("98000\n", "hot\n", "100000\n"), true},
        {"fan speed", zone("98000\n", "active\n", "100000\n"), false},
        {"no limit", zone("30000\n", "critical\n", "0\n"), false},
        {"below zero", zone("-1000\n", "critical\n", "-274000\n"), false},
        {"garbage", zone(QByteArray(100'000, '9'), "critical\n", "100000\n"), false},
    };
    for (const auto& [name, tree, isConstrained] : cases) {
        QTemporaryDir root;
        build(root.path(), tree);
        EXPECT_EQ(PowerState::areResourcesConstrained(root.path()), isConstrained) << name;
    }
}

TEST(PowerStateTest, TheWatchLooksInTheBackgroundAndNotTooOften)
{
    ManualClock clock;
    ManualExecutor executor;
    QTemporaryDir root;
    {
        ResourceWatch watch(clock, executor, root.path());
        QList<bool> told;
        QObject::connect(&watch, &PowerWatch::constrainedChanged, &watch, [&](bool now) { told.append(now); });
        EXPECT_EQ(executor.pendingCount(), 0) << "nobody wants to know";
        watch.setWatching(true);
        watch.setWatching(true);
        executor.runAll();
        build(root.path(), battery("Discharging\n", "3\n"));
        clock.advance(async::seconds(9.9));
        EXPECT_EQ(executor.pendingCount(), 0);
        clock.advance(async::seconds(0.1));
        clock.advance(async::seconds(20));
        EXPECT_EQ(executor.pendingCount(), 1) << "a slow look is not followed by another";
        executor.runAll();
        EXPECT_EQ(told, QList<bool>{true});
        watch.setWatching(false);
        clock.advance(async::seconds(60));
        EXPECT_EQ(executor.pendingCount(), 0);
    }
    executor.dropAll();
    async::MainQueue::drain();
}
