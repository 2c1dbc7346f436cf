// SPDX-License-Identifier: Apache-2.0
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

using namespace values;

class RegistryEntryCaptureTest : public RegistryTest
{
protected:
    RegistryEntryCaptureTest()
    {
        tree_.plane("DxService", R"(
            Root
              Host
                disk@0 : DxDisk : DxDevice : DxService : DxRegistryEntry
                  part
        )");
    }
};

TEST_F(RegistryEntryCaptureTest, ReadsClassesAndBundle)
{
    service_.addClass(QStringLiteral("DxRoot"), QStringLiteral("DxRegistryEntry"),
                      QStringLiteral("__kernel__"));
    capture();
    EXPECT_EQ(entry("Root").bundleID(), QStringLiteral("org.linux.kernel"));
    const TavRegistryEntry &disk = entry("disk@0");
    EXPECT_EQ(disk.reversedInheritance().constFirst(), QStringLiteral("DxRegistryEntry"));
    EXPECT_TRUE(disk.isKindOfDxcoreClass(QStringLiteral("DxService"), false));
    EXPECT_FALSE(disk.isKindOfDxcoreClass(QStringLiteral("service"), false));
    EXPECT_TRUE(disk.isKindOfDxcoreClass(QStringLiteral("service"), true));

    service_.addClass(QStringLiteral("DxDevice"), QStringLiteral("DxDisk")); // a circle
    capture();
    EXPECT_EQ(entry("disk@0").inheritanceString(), QStringLiteral("DxDisk : DxDevice"));
}

TEST_F(RegistryEntryCaptureTest, ReadsStatesOfServicesOnly)
{
    service_.setState(tree_["part"], ServiceInactive);
    service_.setFailures(tree_["Root"], Service::ServiceStateFails | Service::BusyStateFails);
    capture();
    EXPECT_FALSE(entry("part").isActive());
    EXPECT_FALSE(entry("Root").isActive());
}

TEST_F(RegistryEntryCaptureTest, AnEntryThatCannotBeReadIsNotThere)
{
    const std::string without = "Root\n  Host\n";
    constexpr quint64 handlesOfHost = 3; // by which the store follows the registry
    for (const auto failure : {Service::EntryIDFails, Service::ClassNameFails, Service::NameFails,
                               Service::LocationFails, Service::PropertiesFail,
                               Service::ServiceStateFails, Service::BusyStateFails}) {
        service_.setFailures(tree_["disk@0"], failure);
        capture();
        EXPECT_EQ(printed(), without) << failure;
        EXPECT_EQ(service_.openHandles(), 2U + handlesOfHost) << failure;
    }
    service_.setFailures(tree_["disk@0"], {});
    service_.setName(tree_["disk@0"], "d\xffsk");
    capture();
    EXPECT_EQ(printed(), without) << "name not UTF-8";
    service_.setName(tree_["disk@0"], "disk");
    service_.setLocation(tree_["disk@0"], "\xc3");
    capture();
    EXPECT_EQ(printed(), without) << "location not UTF-8";
}

TEST_F(RegistryEntryCaptureTest, WhatFailsInAPlaneFallsBackToWhatStandsForNone)
{
    service_.setName(tree_["disk@0"], "drive", "DxService");
    capture();
    EXPECT_EQ(entry("disk@0").nameAtLocationInPlane(servicePlane), QStringLiteral("drive@0"));
    EXPECT_EQ(entry("disk@0").nameInPlane({}), QStringLiteral("disk"));
    EXPECT_EQ(entry("disk@0").nameInPlane(QStringLiteral("DxOther")), QStringLiteral("disk"));

    service_.setName(tree_["disk@0"], "not\xff", "DxService");
    capture();
    EXPECT_EQ(entry("disk@0").nameInPlane(servicePlane), QStringLiteral("disk"));

    service_.setName(tree_["disk@0"], "drive", "DxService");
    service_.setFailures(tree_["disk@0"], Service::LocationInPlaneFails);
    capture();
    EXPECT_EQ(entry("disk@0").nameInPlane(servicePlane), QStringLiteral("disk"));
    EXPECT_EQ(entry("disk@0").locationInPlane(servicePlane), QStringLiteral("0"));
}

TEST_F(RegistryEntryCaptureTest, ALocationOnceReadInAPlaneStaysAndOneWithoutPlaneGoes)
{
    service_.setLocation(tree_["disk@0"], "bay", "DxService");
    service_.setLocation(tree_["part"], "1");
    capture();
    service_.setLocation(tree_["disk@0"], {}, "DxService");
    service_.setLocation(tree_["part"], {});
    store_->update();
    EXPECT_EQ(entry("disk@0").locationInPlane(servicePlane), QStringLiteral("bay"));
    EXPECT_TRUE(entry("part").locationInPlane({}).isNull());
    EXPECT_EQ(entry("part").nameAtLocationInPlane({}), QStringLiteral("part"));
}

TEST_F(RegistryEntryCaptureTest, LaterFailuresKeepTheLastGoodValues)
{
    service_.setProperties(tree_["disk@0"], dictionary({{"size", number(1)}}));
    service_.setRetainCount(tree_["disk@0"], 1);
    capture();
    const TavRegistryEntry &disk = entry("disk@0");
    const PropertyRef held = disk.propertiesRef();

    service_.setProperties(tree_["disk@0"], dictionary({{"size", number(2)}}));
    service_.setName(tree_["disk@0"], "renamed");
    service_.setRetainCount(tree_["disk@0"], 2);
    service_.setState(tree_["disk@0"], ServiceMatched);
    service_.setFailures(tree_["disk@0"], Service::ServiceStateFails | Service::NameInPlaneFails |
                                              Service::ChildIteratorFails);
    store_->update();
    EXPECT_EQ(disk.nameInPlane({}), QStringLiteral("disk"));
    EXPECT_EQ(disk.kernelRetainCount(), 1U);
    EXPECT_FALSE(disk.isMatched());
    EXPECT_EQ(disk.properties(), held.get());
    EXPECT_TRUE(disk.childrenInPlane(servicePlane).empty());

    // The state is read, the name fails: the old tree is dropped.
    service_.setFailures(tree_["disk@0"], Service::NameFails);
    store_->update();
    EXPECT_TRUE(disk.isMatched());
    EXPECT_FALSE(disk.properties());
    EXPECT_EQ(held->childWithName(QStringLiteral("size"))->value(), number(1));

    service_.setFailures(tree_["disk@0"], {});
    store_->update();
    EXPECT_EQ(disk.properties()->childWithName(QStringLiteral("size"))->value(), number(2));
    EXPECT_EQ(disk.properties()->childAtIndex(0)->registryState(), RegistryStateUnchanged);
    EXPECT_EQ(disk.properties()->registryEntry().get(), &disk);
    EXPECT_EQ(printed(), "Root\n  Host\n    renamed@0\n      part\n");
}

TEST_F(RegistryEntryCaptureTest, PlaneNamesMustFitTheirBuffers)
{
    const QByteArray longest(126, 'p');
    const QByteArray withoutNames(510, 'q');
    const QByteArray tooLong(511, 'r');
    const QByteArray foreign("Fl\xe4"
                             "che");
    for (const QByteArray &plane : {longest, withoutNames, tooLong, foreign}) {
        tree_.plane(plane, "Root\n  Host\n");
        service_.setName(tree_["Host"], "named", plane);
    }
    capture();
    EXPECT_EQ(printed(QString::fromLatin1(longest)), "Root\n  named\n");
    EXPECT_EQ(printed(QString::fromLatin1(withoutNames)), "Root\n  Host\n");
    EXPECT_EQ(printed(QString::fromLatin1(tooLong)), "Root\n");
    EXPECT_EQ(printed(QString::fromLatin1(foreign)), "Root\n");
    EXPECT_EQ(store_->registryPlanes().size(), 5);
}

TEST_F(RegistryEntryCaptureTest, WithoutEntryIDsEntriesAreNumberedAndFoundByHandle)
{
    service_.setHasEntryIDs(false);
    service_.setDistinctHandles(true);
    capture();
    const auto &entries = store_->registryEntries();
    ASSERT_EQ(entries.size(), 4U);
    for (std::size_t i = 1; i < entries.size(); ++i)
        EXPECT_EQ(entries[i]->entryTag(), entries[i - 1]->entryTag() + 1);
    store_->update();
    EXPECT_EQ(store_->registryEntries().size(), 4U);
    capture();
    EXPECT_GT(store_->registryEntries().front()->entryTag(), 3U);
}
