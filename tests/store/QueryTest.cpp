#include "store/TavDataStore.h"
#include "tests/support/TreeBuilder.h"

#include <gtest/gtest.h>

namespace {
using Value = RegistryValue;

CompactString key(const char *text)
{
    return CompactString(QString::fromUtf8(text));
}

Value text(const char *content)
{
    return Value::string(QString::fromUtf8(content));
}

class Query : public testing::Test
{
protected:
    Query()
    {
        service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxBlock"),
                          QStringLiteral("org.disk.drv"));
        TreeBuilder &tree = registry_;
        tree.plane("DxService", R"(
            Root
              Host : DxHost : DxService
                bus : DxBusNub : DxService
                  Disk@0 : DxDisk : DxBlock : DxService
                busy : DxBusy : DxService
        )");
        tree.plane("DxBlock", R"(
            Root
              Host
                Disk@0
        )");
        const auto disk = tree["Disk@0"];
        service_.setName(disk, "Volume", "DxBlock");
        service_.setState(disk, ServiceRegistered | ServiceMatched);
        service_.setBusyCount(disk, 2);
        // A dictionary in an array in a dictionary; a set beside it.
        const Value inner = Value::dictionary({{key("InnerKey"), text("Deep Text")}});
        const Value hidden =
            Value::set({text("Hidden"), Value::dictionary({{key("Lost"), text("x")}})});
        service_.setProperties(disk, Value::dictionary({{key("Outer"), Value::array({inner})},
                                                        {key("Number"), Value::number(4711, 4)},
                                                        {key("Set"), hidden}}));
        store_ = TavDataStore::initFromDxRegistry(service_);
    }

    std::string found(const char *query, FindOptions options)
    {
        EntrySet matches;
        store_->runQuery(QString::fromUtf8(query), options, &matches, nullptr);
        return names(matches);
    }
    static std::string names(const EntrySet &entries)
    {
        QStringList list;
        for (const TavRegistryEntry *entry : entries)
            list.append(entry->nameInPlane({}));
        list.sort();
        return list.join(u' ').toStdString();
    }

    FakeRegistryService service_;
    TreeBuilder registry_{service_};
    std::unique_ptr<TavDataStore> store_;
};

TEST_F(Query, LooksAtWhatTheOptionsName)
{
    EXPECT_EQ(found("BUS", FindOption::Name), "bus busy");
    EXPECT_EQ(found("@0", FindOption::Name), "Disk");
    EXPECT_EQ(found("@", FindOption::Name), "Disk");
    EXPECT_EQ(found("0", FindOption::Name), "Disk");
    EXPECT_EQ(found("uMe@0", FindOption::Name), "Disk");
    EXPECT_EQ(found("volume@0", FindOption::Name), "Disk");
    EXPECT_EQ(found("volume@00", FindOption::Name), "");
    EXPECT_EQ(found("Disk@0", FindOption::Name), "");
    EXPECT_EQ(found("us@", FindOption::Name), "");
    EXPECT_EQ(found("dxdisk", FindOption::Class), "Disk");
    EXPECT_EQ(found("dxblock", FindOption::Class), "");
    EXPECT_EQ(found("dxblock", FindOption::Inheritance), "Disk");
    // The own class is among those inherited.
    EXPECT_EQ(found("dxblock", FindOption::Class | FindOption::Inheritance), "Disk");
    EXPECT_EQ(found("inner", FindOption::Keys), "Disk");
    EXPECT_EQ(found("deep", FindOption::Keys), "");
    EXPECT_EQ(found("deep", FindOption::Values), "Disk");
    EXPECT_EQ(found("4711", FindOption::Values), "");
    EXPECT_EQ(found("DISK.drv", FindOption::BundleID), "Disk");
    EXPECT_EQ(found("disk", FindOption::KeyValue), "");
    EXPECT_EQ(found("", {}), "");
}

TEST_F(Query, DoesNotLookIntoSets)
{
    EXPECT_EQ(found("hidden", FindOption::Values), "");
    EXPECT_EQ(found("lost", FindOption::Keys), "");
    EXPECT_EQ(found("set", FindOption::Keys), "Disk");
}

TEST_F(Query, KnowsStateWordsToTheLetter)
{
    service_.setState(registry_["bus"], ServiceRegistered | ServiceInactive);
    service_.setState(registry_["Host"], 0);
    registry_.plane("DxService", "Root\n  Host\n    late : DxLate : DxService");
    store_->update();
    TavRegistryEntry &busy =
        *store_->registryRoot()
             ->childrenInPlane(QStringLiteral("DxService"))[0]
             ->childrenWithNameAtLocation(QStringLiteral("busy"), QStringLiteral("DxService"))[0];
    busy.noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);

    const QString all = QStringLiteral("Disk Host Root bus busy late");
    const auto expect = [&](const char *word, const char *having,
                            std::initializer_list<const char *> opposites) {
        QStringList others = all.split(u' ');
        for (const QString &name : QString::fromUtf8(having).split(u' '))
            others.removeOne(name);
        EXPECT_EQ(found(word, FindOption::Special), having) << word;
        for (const char *opposite : opposites)
            EXPECT_EQ(found(opposite, FindOption::Special), others.join(u' ').toStdString())
                << opposite;
    };
    expect("registered", "Disk bus busy late", {"!registered", "not registered"});
    expect("matched", "Disk", {"!matched", "not matched"});
    expect("active", "Disk Host busy late", {"!active", "not active"});
    expect("busy", "Disk", {"!busy", "not busy"});
    expect("new", "late", {"!new", "not new"});
    expect("dead", "busy", {"!dead", "not dead"});
    expect("terminated", "busy", {"!terminated", "not terminated"});
    EXPECT_EQ(found("Busy", FindOption::Special), "");
    EXPECT_EQ(found("busy", {}), "Disk busy"); // every step, so the name too
}

TEST_F(Query, FindsTextsOfThePropertiesInAnyCase)
{
    const auto disk = registry_["Disk@0"];
    const QString deseret = QString::fromUcs4(U"\U00010400x"); // a capital of two units
    service_.setProperties(
        disk, Value::dictionary({{key("Größe"), text("ΣΊΣΥΦΟΣ")},
                                 {key("Unit"), text("\u212Aelvin")},
                                 {CompactString(deseret), text("")},
                                 {key("Ends"), text("first")},
                                 {key("Lone"), Value::string(QString(QChar(0xd801)))}}));
    store_->update();
    EXPECT_EQ(found("GRÖSSE", FindOption::Keys), ""); // letter by letter
    EXPECT_EQ(found("GRÖ", FindOption::Keys), "Disk");
    EXPECT_EQ(found("σίσυφος", FindOption::Values), "Disk");
    EXPECT_EQ(found("kelv", FindOption::Values), "Disk");
    EXPECT_EQ(found("\U00010428X", FindOption::Keys), "Disk");
    // Each text by itself, and each kind apart.
    EXPECT_EQ(found("stfirst", FindOption::Values), "");
    EXPECT_EQ(found("ends", FindOption::Values), "");
    EXPECT_EQ(found("first", FindOption::Keys), "");
    EXPECT_EQ(found("first", FindOption::Keys | FindOption::Values), "Disk");

    service_.setProperties(disk, Value::dictionary({{key("Ends"), text("last")}}));
    store_->update();
    EXPECT_EQ(found("first", FindOption::Values), "");
    EXPECT_EQ(found("last", FindOption::Values), "Disk");
}

TEST_F(Query, FindsLongTextsThatManyNodesShare)
{
    const QString filler(100'000, u'.');
    const CompactString longKey(filler + QStringLiteral("LongKey"));
    const Value longText = Value::string(filler + QStringLiteral("ΣΊΣΥΦΟΣ"));
    const Value hidden = Value::string(filler + QStringLiteral("Hidden"));
    const Value::Elements tables(2'000, Value::dictionary({{longKey, longText}}));
    service_.setProperties(registry_["Disk@0"],
                           Value::dictionary({{key("Start"), text("short")},
                                              {key("Tables"), Value::array(tables)},
                                              {key("Set"), Value::set({hidden})},
                                              {key("End"), text("last")}}));
    store_->update();
    const TavRegistryEntry &disk =
        *store_->registryRoot()->childrenInPlane(QStringLiteral("DxBlock"))[0]->childrenInPlane(
            QStringLiteral("DxBlock"))[0];
    const PropertyText folded(*disk.properties());
    EXPECT_FALSE(folded.isWhole());
    EXPECT_LT(folded.both().size(), 1'000'000); // written out, they would take 400 MB

    EXPECT_EQ(found("longkey", FindOption::Keys), "Disk");
    EXPECT_EQ(found("longkey", FindOption::Values), "");
    EXPECT_EQ(found("σίσυφος", FindOption::Values), "Disk");
    EXPECT_EQ(found("σίσυφος", FindOption::Keys), "");
    EXPECT_EQ(found("σίσυφος", FindOption::Keys | FindOption::Values), "Disk");
    EXPECT_EQ(found("hidden", {}), "");
    EXPECT_EQ(found("short", FindOption::Values), "Disk");
    EXPECT_EQ(found("end", FindOption::Keys), "Disk");
    EXPECT_TRUE(disk.containsPropertyName(filler + QStringLiteral("LONGKEY"), false));
    EXPECT_FALSE(disk.containsPropertyName(QStringLiteral("LongKey"), false));
    EXPECT_TRUE(disk.containsPropertyStringValue(QStringLiteral("σίσυφος"), true));
}

TEST_F(Query, KeepsTheAnswerOfTheLastPlaneAndWhoIsAbove)
{
    // The name that matches in the first plane is another one in the second.
    EXPECT_EQ(found("disk", FindOption::Name), "");
    EXPECT_EQ(found("volume", FindOption::Name), "Disk");

    EntrySet matches;
    QHash<QString, EntrySet> above;
    store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, &matches, &above);
    EXPECT_EQ(names(above.value(QStringLiteral("DxService"))), "Host Root bus");
    EXPECT_EQ(names(above.value(QStringLiteral("DxBlock"))), "Host Root");
    above.clear();
    store_->runQuery(QStringLiteral("nowhere"), {}, nullptr, &above);
    EXPECT_EQ(above, (QHash<QString, EntrySet>{{QStringLiteral("DxService"), {}},
                                               {QStringLiteral("DxBlock"), {}}}));
    for (const EntryRef &entry : store_->registryEntries()) {
        EXPECT_FALSE(entry->matchesLastQuery());
        EXPECT_FALSE(entry->descendantMatchesLastQueryInPlane(QStringLiteral("DxService")));
    }
}

TEST_F(Query, FollowsLinksThatChangedSinceTheLastQuery)
{
    const QString plane = QStringLiteral("DxService");
    const auto above = [&] {
        QHash<QString, EntrySet> parents;
        store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, nullptr, &parents);
        return names(parents.value(plane));
    };
    EXPECT_EQ(above(), "Host Root bus");
    TavRegistryEntry &host = *store_->registryRoot()->childrenInPlane(plane)[0];
    TavRegistryEntry &bus = *host.childrenInPlane(plane)[0];
    TavRegistryEntry &busy = *host.childrenInPlane(plane)[1];
    TavRegistryEntry &disk = *bus.childrenInPlane(plane)[0];
    busy.addChild(disk, plane); // a second parent, reached after the first
    EXPECT_EQ(above(), "Host Root bus busy");
    bus.forgetLinksTo({&disk});
    EXPECT_EQ(above(), "Host Root busy");
    disk.addChild(busy, plane); // a circle
    EXPECT_EQ(above(), "Host Root busy");
    busy.forgetLinksTo({&disk});
    disk.forgetLinksTo({&busy});
    EXPECT_EQ(above(), "");
}

TEST_F(Query, AnswersForOneEntryAlone)
{
    TavRegistryEntry &host =
        *store_->registryRoot()->childrenInPlane(QStringLiteral("DxService"))[0];
    EXPECT_TRUE(host.matchesQuery(QStringLiteral("host"), FindOption::Name, nullptr, {}));
    bool below = false;
    EXPECT_FALSE(host.matchesQuery(QStringLiteral("disk"), FindOption::Name, &below,
                                   QStringLiteral("DxService")));
    EXPECT_TRUE(below);
    // An earlier search leaves its marks, which are no answer to this one.
    store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, nullptr, nullptr);
    below = false;
    EXPECT_FALSE(host.matchesQuery(QStringLiteral("nowhere"), FindOption::Name, &below,
                                   QStringLiteral("DxService")));
    EXPECT_FALSE(below);
    EXPECT_TRUE(host.valueForSpecialProperty(QStringLiteral("other")).isNone());
    const TavRegistryEntry &disk =
        *store_->registryRoot()->childrenInPlane(QStringLiteral("DxBlock"))[0]->childrenInPlane(
            QStringLiteral("DxBlock"))[0];
    EXPECT_EQ(disk.valueForSpecialProperty(QStringLiteral("Matched")), text("True"));
    EXPECT_EQ(disk.valueForSpecialProperty(QStringLiteral("ACTIVE")), text("True"));
    EXPECT_TRUE(disk.containsPropertyName(QStringLiteral("inner"), true));
    EXPECT_FALSE(disk.containsPropertyName(QStringLiteral("inner"), false));
    EXPECT_TRUE(disk.containsPropertyName(QStringLiteral("INNERKEY"), false));
    EXPECT_TRUE(disk.containsPropertyStringValue(QStringLiteral("deep text"), false));
    EXPECT_FALSE(disk.containsPropertyStringValue(QStringLiteral("text"), false));
    EXPECT_FALSE(disk.containsPropertyStringValue({}, true));
    EXPECT_EQ(host.valueForSpecialProperty(QStringLiteral("BUSY")), Value::number(0, 4));
}
} // namespace
