// SPDX-License-Identifier: Apache-2.0
#include "platform/runloop/NotificationCenter.h"

#include <gtest/gtest.h>
#include <optional>
#include <vector>

namespace {
const QString changed = QStringLiteral("changed");
const QString gone = QStringLiteral("gone");
} // namespace

class NotificationCenterTest : public testing::Test
{
protected:
    using Observation = NotificationCenter::Observation;

    Observation record(const QString &name, const void *object, int number)
    {
        return center_.observe(name, object,
                               [this, number](const auto &) { told_.push_back(number); });
    }

    NotificationCenter center_;
    std::vector<int> told_;
};

TEST_F(NotificationCenterTest, DeliversByNameAndSenderInOrderUntilTheObservationEnds)
{
    const int sender = 0;
    const int other = 0;
    auto first = record(changed, nullptr, 1);
    {
        const auto second = record(changed, &sender, 2);
        const auto third = record(changed, &other, 3);
        const auto fourth = record(gone, nullptr, 4);
        center_.post(changed, &sender);
    }
    center_.post(changed, &sender);
    first = record(gone, nullptr, 5);
    center_.post(changed, &sender);
    EXPECT_EQ(told_, (std::vector<int>{1, 2, 1}));
}

TEST_F(NotificationCenterTest, AnObserverMayRemoveItselfAndOthersWhileTold)
{
    std::optional<Observation> self;
    std::optional<Observation> later = record(changed, nullptr, 3);
    std::optional<Observation> earlier = record(changed, nullptr, 1);
    later.reset();
    // The handler's captures must stay valid until it returns, although it is removed here.
    const auto text = std::make_shared<QString>(QStringLiteral("held"));
    self = center_.observe(changed, nullptr, [&, text](const auto &) {
        self.reset();
        earlier.reset();
        later.reset();
        told_.push_back(static_cast<int>(text->size()));
    });
    later = record(changed, nullptr, 3);
    center_.post(changed, nullptr);
    center_.post(changed, nullptr);
    EXPECT_EQ(told_, (std::vector<int>{1, 4}));
}

TEST_F(NotificationCenterTest, AnObserverAddedWhileToldWaitsForTheNextPost)
{
    std::vector<Observation> added;
    const auto adder = center_.observe(changed, nullptr, [&](const auto &) {
        for (int i = 0; i < 100; ++i) // enough to move the observers
            added.push_back(record(changed, nullptr, i));
    });
    const auto last = record(changed, nullptr, 1000);
    center_.post(changed, nullptr);
    EXPECT_EQ(told_, (std::vector<int>{1000}));
    added.clear();
}

TEST_F(NotificationCenterTest, PostsMayNestAndTheNameMayBeDestroyed)
{
    auto name = std::make_unique<QString>(changed);
    const auto outer = center_.observe(changed, nullptr, [&](const auto &notification) {
        name.reset();
        told_.push_back(1);
        const auto passing = record(gone, nullptr, 2);
        center_.post(gone, notification.object);
    });
    const auto last = record(changed, nullptr, 3);
    center_.post(*name, nullptr);
    center_.post(gone, nullptr);
    EXPECT_EQ(told_, (std::vector<int>{1, 2, 3}));
}
