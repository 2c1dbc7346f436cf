// SPDX-License-Identifier: Apache-2.0
// Random edits of a registry must come back from a comparison, no more and no less.
#include "ComparedRegistries.h"

#include <map>
#include <random>

namespace {
using namespace values;

// A registry as plain data: devices with a serial number, a value and a counter.
class EditableRegistry
{
public:
    explicit EditableRegistry(std::mt19937 &random)
        : random_(random)
    {
        constexpr int count = 60;
        for (int i = 0; i < count; ++i)
            devices_.push_back({.name = "device" + std::to_string(i),
                                .parent = i == 0 ? -1 : number(-1, i - 1),
                                .serial = "S" + std::to_string(i)});
    }

    // The edits that a comparison must find: the sign and the name that it shows.
    std::map<std::string, char> edit()
    {
        std::map<std::string, char> expected;
        for (const int device : leaves()) {
            Device &edited = devices_[static_cast<std::size_t>(device)];
            const int kind = number(0, 7);
            if (kind == 0) {
                edited.isThere = false;
                expected[edited.name] = '-';
            } else if (kind == 1) {
                edited.name = "renamed" + edited.name;
                expected[edited.name] = '~';
            } else if (kind == 2 && edited.parent > 0) {
                edited.parent = -1;
                expected[edited.name] = '>';
            } else if (kind == 3) {
                edited.value = 7;
                expected[edited.name] = '*';
            } else if (kind == 4) {
                edited.counter = 9;
            }
        }
        for (int i = number(0, 3); i > 0; --i) {
            devices_.push_back({.name = "new" + std::to_string(i), .parent = 0});
            expected[devices_.back().name] = '+';
        }
        return expected;
    }

    std::unique_ptr<DescribedRegistry> described() const
    {
        auto registry =
            std::make_unique<DescribedRegistry>(("Root\n  Host\n" + rows(-1, 2)).c_str());
        for (const Device &device : devices_) {
            if (device.isThere)
                registry->with(device.name.c_str(),
                               dictionary({{"subsystem", text("class/net")},
                                           {"serial", text(device.serial.c_str())},
                                           {"value", number(device.value)},
                                           {"statistics",
                                            dictionary({{"rx_bytes", number(device.counter)}})}}));
        }
        return registry;
    }

private:
    struct Device
    {
        std::string name;
        int parent; // -1: the host
        std::string serial = {};
        quint64 value = 0;
        quint64 counter = 0;
        bool isThere = true;
    };

    static RegistryValue number(quint64 bits) { return values::number(bits); }
    int number(int least, int most) { return std::uniform_int_distribution(least, most)(random_); }
    std::vector<int> leaves() const
    {
        std::vector<int> found;
        for (int i = 0; i < static_cast<int>(devices_.size()); ++i) {
            if (std::none_of(devices_.begin(), devices_.end(),
                             [i](const Device &device) { return device.parent == i; }))
                found.push_back(i);
        }
        return found;
    }
    std::string rows(int parent, std::size_t level) const
    {
        std::string text;
        for (std::size_t i = 0; i < devices_.size(); ++i) {
            if (devices_[i].parent == parent && devices_[i].isThere)
                text += std::string(2 * level, ' ') + devices_[i].name + '\n' +
                        rows(static_cast<int>(i), level + 1);
        }
        return text;
    }

    std::mt19937 &random_;
    std::vector<Device> devices_;
};

std::map<std::string, char> found(const SnapshotComparison &comparison)
{
    std::map<std::string, char> differences;
    for (const EntryDifference &difference : comparison.differences()) {
        if (difference.kind != DifferenceKind::Same)
            differences[difference.entry().facts().name.toStdString()] =
                "=*>~+-"[static_cast<int>(difference.kind)];
    }
    return differences;
}
} // namespace

TEST(ComparisonEdits, ComeBackExactly)
{
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        EditableRegistry registry(random);
        const auto before = registry.described();
        const auto expected = registry.edit();
        const auto after = registry.described();
        const SnapshotComparison forward(before->store(), after->store(), {}, {});
        EXPECT_EQ(found(forward), expected) << "seed " << seed;
        const SnapshotComparison backward(after->store(), before->store(), {}, {});
        EXPECT_EQ(backward.counts().added, forward.counts().removed) << "seed " << seed;
        EXPECT_EQ(backward.counts().differences(), forward.counts().differences());
    }
}

// Equal candidates pair in order, and many of them in linear time.
TEST(ComparisonEdits, OfManyDevicesOfOneNameAreCounted)
{
    const auto withTwins = [](int count) {
        std::string tree = "Root\n  Host\n";
        for (int i = 0; i < count; ++i)
            tree += "    twin #twin" + std::to_string(i) + '\n';
        return std::make_unique<DescribedRegistry>(tree.c_str());
    };
    const auto before = withTwins(20'000);
    const auto after = withTwins(19'000);
    const SnapshotComparison comparison(before->store(), after->store(), {}, {});
    EXPECT_EQ(comparison.counts().removed, 1'000U);
    EXPECT_EQ(comparison.counts().differences(), 1'000U);
}

TEST(ComparisonEdits, SurviveRegistriesWithoutAnythingInCommon)
{
    DescribedRegistry before("Root\n  a\n    b\n");
    DescribedRegistry after("Root\n  c\n");
    EXPECT_EQ(
        differences(before, after),
        QStringList({QStringLiteral("- /a"), QStringLiteral("- /a/b"), QStringLiteral("+ /c")}));
    // An entry that is its own descendant in one plane.
    DescribedRegistry same("Root\n  a\n    b\n");
    same.plane("DxPower", "Root\n  b\n    a\n      b\n");
    EXPECT_EQ(differences(same, same), QStringList());
}
