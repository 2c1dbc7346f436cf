// SPDX-License-Identifier: Apache-2.0
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

using namespace values;

namespace {
class Query : public RegistryTest
{
protected:
    Query()
    {
        service_.addClass(QStringLiteral("DxDisk"), QStringLiteral("DxBlock"),
                          QStringLiteral("org.disk.drv"));
        tree_.plane("DxService", R"(
            Root
              Host : DxHost : DxService
                bus : DxBusNub : DxService
                  Disk@0 : DxDisk : DxBlock : DxService
                busy : DxBusy : DxService
        )");
        tree_.plane("DxBlock", R"(
            Root
              Host
                Disk@0
        )");
        const auto disk = tree_["Disk@0"];
        service_.setName(disk, "Volume", "DxBlock");
        service_.setState(disk, ServiceRegistered | ServiceMatched);
        service_.setBusyCount(disk, 2);
        // A dictionary in an array in a dictionary; a set beside it.
        const auto inner = dictionary({{"InnerKey", text("Deep Text")}});
        const auto hidden = set({text("Hidden"), dictionary({{"Lost", text("x")}})});
        service_.setProperties(
            disk,
            dictionary({{"Outer", array({inner})}, {"Number", number(4711)}, {"Set", hidden}}));
        capture();
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
};

TEST_F(Query, LooksAtWhatTheOptionsName)
{
    const struct
    {
        const char *query;
        FindOptions options;
        const char *found;
    } rows[] = {
        {"BUS", FindOption::Name, "bus busy"},
        {"@0", FindOption::Name, "Disk"},
        {"@", FindOption::Name, "Disk"},
        {"0", FindOption::Name, "Disk"},
        {"uMe@0", FindOption::Name, "Disk"},
        {"volume@00", FindOption::Name, ""},
        // The name that matches in the first plane is different in the second.
        {"Disk@0", FindOption::Name, ""},
        {"us@", FindOption::Name, ""},
        {"dxdisk", FindOption::Class, "Disk"},
        {"dxblock", FindOption::Class, ""},
        {"dxblock", FindOption::Inheritance, "Disk"},
        // The inheritance includes the own class.
        {"dxblock", FindOption::Class | FindOption::Inheritance, "Disk"},
        {"inner", FindOption::Keys, "Disk"},
        {"deep", FindOption::Keys, ""},
        {"deep", FindOption::Values, "Disk"},
        {"4711", FindOption::Values, ""},
        {"DISK.drv", FindOption::BundleID, "Disk"},
        {"disk", FindOption::KeyValue, ""},
        {"", {}, ""},
        // Sets are skipped.
        {"hidden", FindOption::Values, ""},
        {"lost", FindOption::Keys, ""},
        {"set", FindOption::Keys, "Disk"},
    };
    for (const auto &[query, options, expected] : rows)
        EXPECT_EQ(found(query, options), expected) << query << ' ' << options;
}

TEST_F(Query, AsksForShownValuesWhereTheirOptionIsSet)
{
    const auto hasNumber = [](const TavRegistryEntry &entry) {
        const std::span values = entry.propertyText().values();
        return std::any_of(values.begin(), values.end(), [](const RegistryValue &value) {
            return value.meansTheSameAs(number(4711));
        });
    };
    const auto found = [&](FindOptions options, const ShownValueTest &test) {
        EntrySet matches;
        store_->runQuery(QStringLiteral("4711"), options, &matches, nullptr, test);
        return names(matches);
    };
    EXPECT_EQ(found(FindOption::ShownValues, hasNumber), "Disk");
    EXPECT_EQ(found(FindOption::ShownValues | FindOption::Name, hasNumber), "Disk");
    EXPECT_EQ(found(FindOption::Values, hasNumber), "");
    EXPECT_EQ(found({}, hasNumber), ""); // every option but this one
    EXPECT_EQ(found(FindOption::ShownValues, nullptr), "");
}

TEST_F(Query, KnowsStateWordsToTheLetter)
{
    service_.setState(tree_["bus"], ServiceRegistered | ServiceInactive);
    service_.setState(tree_["Host"], 0);
    tree_.plane("DxService", "Root\n  Host\n    late : DxLate : DxService");
    store_->update();
    entry("busy").noteTerminatedAtDate(QDateTime::currentDateTimeUtc(), true);

    const QString all = QStringLiteral("Disk Host Root bus busy late");
    for (const auto &[word, having] :
         {std::pair{"registered", "Disk bus busy late"}, std::pair{"matched", "Disk"},
          std::pair{"active", "Disk Host busy late"}, std::pair{"busy", "Disk"},
          std::pair{"new", "late"}, std::pair{"dead", "busy"}, std::pair{"terminated", "busy"}}) {
        EXPECT_EQ(found(word, FindOption::Special), having) << word;
        QStringList others = all.split(u' ');
        for (const QString &name : QString::fromUtf8(having).split(u' '))
            others.removeOne(name);
        for (const std::string no : {"!", "not "})
            EXPECT_EQ(found((no + word).c_str(), FindOption::Special),
                      others.join(u' ').toStdString())
                << no << word;
    }
    EXPECT_EQ(found("Busy", FindOption::Special), "");
    EXPECT_EQ(found("busy", {}), "Disk busy"); // every step, so the name too
}

TEST_F(Query, FindsTextsOfThePropertiesInAnyCase)
{
    const auto disk = tree_["Disk@0"];
    service_.setProperties(disk,
                           dictionary({{"Größe", text("ΣΊΣΥΦΟΣ")},
                                       {"Unit", text("\u212Aelvin")},
                                       {"\U00010400x", text("")}, // a capital of two units
                                       {"Ends", text("first")},
                                       {"Lone", RegistryValue::string(QString(QChar(0xd801)))}}));
    store_->update();
    EXPECT_EQ(found("GRÖSSE", FindOption::Keys), ""); // letter by letter
    EXPECT_EQ(found("GRÖ", FindOption::Keys), "Disk");
    EXPECT_EQ(found("σίσυφος", FindOption::Values), "Disk");
    EXPECT_EQ(found("kelv", FindOption::Values), "Disk");
    EXPECT_EQ(found("\U00010428X", FindOption::Keys), "Disk");
    // Each text separately, and each kind separately.
    EXPECT_EQ(found("stfirst", FindOption::Values), "");
    EXPECT_EQ(found("ends", FindOption::Values), "");
    EXPECT_EQ(found("first", FindOption::Keys), "");
    EXPECT_EQ(found("first", FindOption::Keys | FindOption::Values), "Disk");

    service_.setProperties(disk, dictionary({{"Ends", text("last")}}));
    store_->update();
    EXPECT_EQ(found("first", FindOption::Values), "");
    EXPECT_EQ(found("last", FindOption::Values), "Disk");
}

TEST_F(Query, FindsLongTextsThatManyNodesShare)
{
    const QString filler(100'000, u'.');
    const CompactString longKey(filler + QStringLiteral("LongKey"));
    const RegistryValue longText = RegistryValue::string(filler + QStringLiteral("ΣΊΣΥΦΟΣ"));
    const RegistryValue hidden = RegistryValue::string(filler + QStringLiteral("Hidden"));
    const RegistryValue::Elements tables(2'000, RegistryValue::dictionary({{longKey, longText}}));
    service_.setProperties(tree_["Disk@0"], dictionary({{"Start", text("short")},
                                                        {"Tables", array(tables)},
                                                        {"Set", set({hidden})},
                                                        {"End", text("last")}}));
    store_->update();
    const PropertyText folded(*entry("Disk@0").properties());
    EXPECT_FALSE(folded.isWhole());
    EXPECT_LT(folded.keys().size() + folded.strings().size(),
              1'000'000); // written out, they would take 400 MB

    EXPECT_EQ(found("longkey", FindOption::Keys), "Disk");
    EXPECT_EQ(found("longkey", FindOption::Values), "");
    EXPECT_EQ(found("σίσυφος", FindOption::Values), "Disk");
    EXPECT_EQ(found("σίσυφος", FindOption::Keys), "");
    EXPECT_EQ(found("σίσυφος", FindOption::Keys | FindOption::Values), "Disk");
    EXPECT_EQ(found("hidden", {}), "");
    EXPECT_EQ(found("short", FindOption::Values), "Disk");
    EXPECT_EQ(found("end", FindOption::Keys), "Disk");
}

TEST_F(Query, ReportsEntriesAboveMatches)
{
    EntrySet matches;
    QHash<QString, EntrySet> above;
    store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, &matches, &above);
    EXPECT_EQ(names(above.value(servicePlane)), "Host Root bus");
    EXPECT_EQ(names(above.value(QStringLiteral("DxBlock"))), "Host Root");
    above.clear();
    store_->runQuery(QStringLiteral("nowhere"), {}, nullptr, &above);
    EXPECT_EQ(above,
              (QHash<QString, EntrySet>{{servicePlane, {}}, {QStringLiteral("DxBlock"), {}}}));
    for (const EntryRef &entry : store_->registryEntries()) {
        EXPECT_FALSE(entry->matchesLastQuery());
        EXPECT_FALSE(entry->descendantMatchesLastQueryInPlane(servicePlane));
    }
}

TEST_F(Query, FollowsLinksThatChangedSinceTheLastQuery)
{
    const auto above = [&] {
        QHash<QString, EntrySet> parents;
        store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, nullptr, &parents);
        return names(parents.value(servicePlane));
    };
    EXPECT_EQ(above(), "Host Root bus");
    TavRegistryEntry &bus = entry("bus");
    TavRegistryEntry &busy = entry("busy");
    TavRegistryEntry &disk = entry("Disk@0");
    busy.addChild(disk, servicePlane); // a second parent, reached after the first
    EXPECT_EQ(above(), "Host Root bus busy");
    bus.forgetLinksTo({&disk});
    EXPECT_EQ(above(), "Host Root busy");
    disk.addChild(busy, servicePlane); // a circle
    EXPECT_EQ(above(), "Host Root busy");
    busy.forgetLinksTo({&disk});
    disk.forgetLinksTo({&busy});
    EXPECT_EQ(above(), "");
}

TEST_F(Query, AnswersForOneEntryAlone)
{
    TavRegistryEntry &host = entry("Host");
    EXPECT_TRUE(host.matchesQuery(QStringLiteral("host"), FindOption::Name, nullptr, {}));
    bool below = false;
    EXPECT_FALSE(host.matchesQuery(QStringLiteral("disk"), FindOption::Name, &below, servicePlane));
    EXPECT_TRUE(below);
    // Marks of an earlier search do not affect this one.
    store_->runQuery(QStringLiteral("dxdisk"), FindOption::Class, nullptr, nullptr);
    below = false;
    EXPECT_FALSE(
        host.matchesQuery(QStringLiteral("nowhere"), FindOption::Name, &below, servicePlane));
    EXPECT_FALSE(below);
    const TavRegistryEntry &disk = entry("Disk@0");
    EXPECT_EQ(disk.valueForSpecialProperty(QStringLiteral("Matched")), text("True"));
    EXPECT_EQ(disk.valueForSpecialProperty(QStringLiteral("BUSY")), number(2));
    EXPECT_TRUE(disk.containsPropertyName(QStringLiteral("inner"), true));
    EXPECT_FALSE(disk.containsPropertyName(QStringLiteral("inner"), false));
    EXPECT_TRUE(disk.containsPropertyStringValue(QStringLiteral("deep text"), false));
    EXPECT_FALSE(disk.containsPropertyStringValue({}, true));
}
} // namespace
