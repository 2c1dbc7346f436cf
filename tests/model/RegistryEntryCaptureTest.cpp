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

TEST_F(RegistryEntryCaptureTest, ReadsIdentityClassesAndBundle)
{
    service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxDevice"),
                      QStringLiteral("sd_mod"));
    service_.addClass(QStringLiteral("DxRoot"), QStringLiteral("DxRegistryEntry"),
                      QStringLiteral("__kernel__"));
    service_.setBundlePath(QStringLiteral("sd_mod"), QStringLiteral("/lib/sd_mod.ko"));
    capture();
    const TavRegistryEntry &disk = entry("disk@0");
    EXPECT_EQ(disk.DxcoreClass(), QStringLiteral("DxDisk"));
    EXPECT_EQ(disk.inheritanceString(),
              QStringLiteral("DxDisk : DxDevice : DxService : DxRegistryEntry"));
    EXPECT_EQ(disk.reversedInheritance().constFirst(), QStringLiteral("DxRegistryEntry"));
    EXPECT_EQ(disk.bundleID(), QStringLiteral("sd_mod"));
    EXPECT_EQ(disk.bundlePath(), QStringLiteral("/lib/sd_mod.ko"));
    EXPECT_TRUE(disk.conformsToDxService());
    EXPECT_TRUE(disk.isKindOfDxcoreClass(QStringLiteral("DxService"), false));
    EXPECT_FALSE(disk.isKindOfDxcoreClass(QStringLiteral("service"), false));
    EXPECT_TRUE(disk.isKindOfDxcoreClass(QStringLiteral("service"), true));
    EXPECT_FALSE(disk.isKindOfDxcoreClass(QStringLiteral("DxRoot"), true));

    const TavRegistryEntry &root = entry("Root");
    EXPECT_EQ(root.bundleID(), QStringLiteral("org.linux.kernel"));
    EXPECT_TRUE(root.bundlePath().isNull());
    EXPECT_FALSE(root.conformsToDxService());
    EXPECT_TRUE(root.isRegistryRoot());
    EXPECT_FALSE(disk.isRegistryRoot());
    EXPECT_TRUE(entry("part").bundleID().isNull());
}

TEST_F(RegistryEntryCaptureTest, ClassChainsEndWithoutLookUpOrAtACycle)
{
    service_.addClass(QStringLiteral("DxDevice"), QStringLiteral("DxDisk"));
    capture();
    EXPECT_EQ(entry("disk@0").inheritanceString(), QStringLiteral("DxDisk : DxDevice"));
    service_.setHasSuperclassLookup(false);
    capture();
    EXPECT_EQ(entry("disk@0").inheritance(), QStringList{QStringLiteral("DxDisk")});
    EXPECT_EQ(entry("disk@0").reversedInheritance(), entry("disk@0").inheritance());
}

TEST_F(RegistryEntryCaptureTest, ReadsStatesAndCountsOfServicesOnly)
{
    service_.setState(tree_["disk@0"], ServiceRegistered | ServiceMatched);
    service_.setBusyCount(tree_["disk@0"], 3);
    service_.setRetainCount(tree_["disk@0"], 12);
    service_.setState(tree_["part"], ServiceInactive);
    service_.setFailures(tree_["Root"], Service::ServiceStateFails | Service::BusyStateFails);
    capture();
    const TavRegistryEntry &disk = entry("disk@0");
    EXPECT_TRUE(disk.isRegistered() && disk.isMatched() && disk.isActive());
    EXPECT_EQ(disk.busyCount(), 3U);
    EXPECT_EQ(disk.kernelRetainCount(), 12U);
    const TavRegistryEntry &part = entry("part");
    EXPECT_FALSE(part.isRegistered() || part.isMatched() || part.isActive());
    EXPECT_FALSE(entry("Root").isActive());
}

TEST_F(RegistryEntryCaptureTest, AnEntryThatCannotBeReadIsNotThere)
{
    const std::pair<const char *, Service::Failure> failures[] = {
        {"entry ID", Service::EntryIDFails},
        {"class name", Service::ClassNameFails},
        {"name", Service::NameFails},
        {"location", Service::LocationFails},
        {"properties", Service::PropertiesFail},
        {"service state", Service::ServiceStateFails},
        {"busy state", Service::BusyStateFails},
    };
    const std::string without = dedented(R"(
        Root
          Host
    )");
    constexpr quint64 handlesOfHost = 3; // by which the store follows the registry
    for (const auto &[what, failure] : failures) {
        service_.setFailures(tree_["disk@0"], failure);
        capture();
        EXPECT_EQ(printed(), without) << what;
        EXPECT_EQ(store_->registryEntries().size(), 2U) << what;
        EXPECT_EQ(service_.openHandles(), 2U + handlesOfHost) << what;
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

    // The state is read, the name fails: the old tree is given up.
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
    EXPECT_EQ(printed(), dedented(R"(
        Root
          Host
            renamed@0
              part
    )"));
}

TEST_F(RegistryEntryCaptureTest, PlaneNamesMustFitTheirBuffers)
{
    const QByteArray longest(126, 'p');
    const QByteArray withoutNames(510, 'q');
    const QByteArray tooLong(511, 'r');
    const QByteArray foreign("Fl\xe4"
                             "che");
    for (const QByteArray &plane : {longest, withoutNames, tooLong, foreign}) {
        tree_.plane(plane, R"(
            Root
              Host
        )");
        service_.setName(tree_["Host"], "named", plane);
    }
    capture();
    const std::string named = "Root\n  named\n";
    const std::string unnamed = "Root\n  Host\n";
    EXPECT_EQ(printed(QString::fromLatin1(longest)), named);
    EXPECT_EQ(printed(QString::fromLatin1(withoutNames)), unnamed);
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
