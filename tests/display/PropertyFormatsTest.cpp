// SPDX-License-Identifier: Apache-2.0
#include "DisplayFixture.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"

#include "display/PropertyFormatDescriptor.h"
#include "display/PropertyFormatStore.h"
#include "platform/preferences/PreferencesStore.h"

#include <QDir>
#include <gtest/gtest.h>

namespace {
TEST(PropertyFormatDescriptorTest, EveryValidRecordSurvives)
{
    std::vector<PropertyFormatOptions> records{{.unit = -1}, {.unit = -2}};
    for (const qint64 order : {0, 1, 2}) {
        for (const qint64 encoding : {Q_INT64_C(0), Q_INT64_C(30), Q_INT64_C(4294967295)})
            records.push_back({.unit = 0, .encoding = encoding, .byteOrder = order});
        for (const qint64 unit : {1, 2, 4, 8}) {
            for (const qint64 base : {2, 8, 10, 16}) {
                for (const qint64 sign : {0, 1})
                    records.push_back(
                        {.unit = unit, .base = base, .byteOrder = order, .signedness = sign});
            }
        }
    }
    for (const PropertyFormatOptions &record : records) {
        const QString descriptor = PropertyFormatDescriptor::descriptorForPropertyFormats(record);
        EXPECT_EQ(PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor), record)
            << qUtf8Printable(descriptor);
    }
}

TEST(PropertyFormatDescriptorTest, ReadsShortFormsAndRefusesTheRest)
{
    EXPECT_EQ(formatOf("s30"), formatOf("s30h"));
    EXPECT_EQ(formatOf("anything").unit, PropertyFormatOptions::automatic);
    EXPECT_EQ(formatOf("d4xhu").unit, PropertyFormatOptions::useDefault);
    const PropertyFormatOptions unreadable{.unit = -7};
    for (const char *descriptor :
         {"", "x", "3xhu", "0xhu", "-1", "4", "4x", "4xh", "4xhq", "4yhu", "4xqu", "4xhuu", " 4xhu",
          "s", "sh", "s-1h", "s30q", "s99999999999999999999h"})
        EXPECT_EQ(formatOf(descriptor), unreadable) << descriptor;
    for (const QString &descriptor : {QString(), QStringLiteral("aä"), QStringLiteral("s٣h")})
        EXPECT_EQ(PropertyFormatDescriptor::propertyFormatForDescriptor(descriptor), unreadable);
}

class FormatsByClassTest : public testing::Test
{
protected:
    FormatsByClassTest()
    {
        const RegistryValue value =
            values::dictionary({{"reg", values::array({values::number(42), values::number(42)})},
                                {"one", values::number(42)}});
        own_ = store_.entry({own, mid, root}, value);
        sibling_ = store_.entry({QStringLiteral("Sibling"), mid, root}, value);
        base_ = store_.entry({root}, value);
    }

    static TavPropertyOutlineItem &container(const EntryRef &its) { return itemAt(its, "Value"); }
    static TavPropertyOutlineItem &one(const EntryRef &its) { return itemAt(its, "Value/one"); }
    static TavPropertyOutlineItem &element(const EntryRef &its)
    {
        return itemAt(its, "Value/reg/1");
    }
    static QString shown(TavPropertyOutlineItem &item)
    {
        item.resetDisplayValueRecursive();
        return item.displayValue().text();
    }
    // The class and where the format was found, such as "Mid" or "Mid shared"; "-" if nowhere.
    static QString found(const TavPropertyOutlineItem &item)
    {
        const auto format = item.getPropertyFormats();
        if (!format)
            return QStringLiteral("-");
        return format->className + (format->isShared ? QStringLiteral(" shared") : QString());
    }
    static QStringList storedKeys()
    {
        QStringList keys = PreferencesStore::shared(PropertyFormatStore::domain()).storedKeys();
        keys.sort();
        return keys;
    }

    const QString own = QStringLiteral("Own");
    const QString mid = QStringLiteral("Mid");
    const QString root = QStringLiteral("Root");
    PreferencesFolder preferences_;
    MachineStore store_;
    EntryRef own_;
    EntryRef sibling_;
    EntryRef base_;
};

TEST_F(FormatsByClassTest, FoundForSubclassesAndContentsThroughARestart)
{
    container(base_).setPropertyFormats(formatOf("4bhu"), root);
    preferences_.restart();
    EXPECT_EQ(shown(one(own_)), QStringLiteral("0b101010"));
    EXPECT_EQ(found(one(own_)), QStringLiteral("Root shared"));
    EXPECT_EQ(found(container(own_)), root);
    EXPECT_EQ(found(element(sibling_)), QStringLiteral("Root shared"));

    container(own_).setPropertyFormats(formatOf("4ohu"), mid);
    preferences_.restart();
    EXPECT_EQ(shown(one(own_)), QStringLiteral("0o52"));
    EXPECT_EQ(shown(element(sibling_)), QStringLiteral("0o52"));
    EXPECT_EQ(shown(one(base_)), QStringLiteral("0b101010"));

    // A format of the property itself wins over a more specific one of what contains it.
    one(own_).setPropertyFormats(formatOf("4dhu"), root);
    preferences_.restart();
    EXPECT_EQ(shown(one(own_)), QStringLiteral("42"));
    EXPECT_EQ(found(one(own_)), root);
    EXPECT_EQ(shown(element(own_)), QStringLiteral("0o52"));

    EXPECT_EQ(storedKeys(),
              (QStringList{QStringLiteral("Root:://Value"), QStringLiteral("Root:://Value/one"),
                           QStringLiteral("Root:Mid:://Value")}));
}

TEST_F(FormatsByClassTest, RemovingFallsBackClassByClassThenToContainersAndTheDefault)
{
    container(own_).setPropertyFormats(formatOf("s1h"), own);
    one(own_).setPropertyFormats(formatOf("4dhu"), root);
    one(own_).setPropertyFormats(formatOf("4bhu"), own);
    const PropertyFormatOptions none{.unit = PropertyFormatOptions::useDefault};
    EXPECT_EQ(shown(one(own_)), QStringLiteral("0b101010"));
    one(own_).setPropertyFormats(none, own);
    EXPECT_EQ(shown(one(own_)), QStringLiteral("42"));
    one(own_).setPropertyFormats({.unit = 4, .base = 7}, root); // has no descriptor
    EXPECT_EQ(shown(one(own_)), QStringLiteral("*"));
    container(own_).setPropertyFormats(none, own);
    EXPECT_EQ(shown(one(own_)), QStringLiteral("0x2a"));
    EXPECT_EQ(found(one(own_)), QStringLiteral("-"));
    EXPECT_TRUE(storedKeys().isEmpty());
}

TEST_F(FormatsByClassTest, ClassesTheEntryDoesNotInheritAreRefused)
{
    EXPECT_EQ(one(own_).classPathForClass(own), QStringLiteral("Root:Mid:Own:"));
    EXPECT_EQ(one(own_).classPathForClass(root), QStringLiteral("Root:"));
    EXPECT_TRUE(one(base_).classPathForClass(own).isNull());
    one(base_).setPropertyFormats(formatOf("4dhu"), own);
    EXPECT_TRUE(storedKeys().isEmpty());
}

TEST_F(FormatsByClassTest, WhatCannotBeReadIsUsedAsItIsAndOtherTypesAreIgnored)
{
    PreferencesStore &stored = PreferencesStore::shared(PropertyFormatStore::domain());
    stored.setValue(QStringLiteral("Root:Mid:Own:://Value/one"), 4);
    EXPECT_EQ(shown(one(own_)), QStringLiteral("0x2a"));
    stored.setValue(QStringLiteral("Root:Mid:Own:://Value/one"), QStringLiteral("4xh"));
    EXPECT_EQ(shown(one(own_)), QStringLiteral("(internal error!)"));
    PreferencesStore::standard().setValue(PreferenceKeys::defaultFormat.toString(),
                                          QStringLiteral("?"));
    EXPECT_EQ(shown(one(base_)), QStringLiteral("(internal error!)"));
}

class FormatClearingTest : public FormatsByClassTest
{
protected:
    void storeAll()
    {
        for (const QString &className : {root, mid, own}) {
            container(own_).setPropertyFormats(formatOf("1xhu"), className);
            one(own_).setPropertyFormats(formatOf("2xhu"), className);
            element(own_).setPropertyFormats(formatOf("4xhu"), className);
        }
        container(sibling_).setPropertyFormats(formatOf("1xhu"), QStringLiteral("Sibling"));
    }
    // What is left, one line a class path.
    static QString left()
    {
        QMap<QString, QStringList> byClass;
        for (const QString &key : storedKeys())
            byClass[key.section(QStringLiteral("::"), 0, 0)]
                << key.section(QStringLiteral("//Value"), 1);
        QString text;
        for (auto it = byClass.cbegin(); it != byClass.cend(); ++it)
            text += it.key() + u' ' + it.value().join(u' ') + u'\n';
        return text;
    }
};

TEST_F(FormatClearingTest, TakesWhatIsAskedForOnly)
{
    using Item = TavPropertyOutlineItem;
    const std::pair<std::function<void(Item & one, Item & container)>, const char *> cases[] = {
        {[this](Item &one, Item &) { one.clearPropertyFormats(true, true, mid); },
         "Root  /one /reg[0]\n"
         "Root:Mid  /reg[0]\n"
         "Root:Mid:Own  /reg[0]\n"
         "Root:Mid:Sibling \n"},
        {[this](Item &, Item &container) { container.clearPropertyFormats(false, true, mid); },
         "Root  /one /reg[0]\n"
         "Root:Mid \n"
         "Root:Mid:Own \n"
         "Root:Mid:Sibling \n"},
        {[this](Item &one, Item &) { one.clearPropertyFormatsForSubclassesOfClass(mid); },
         "Root  /one /reg[0]\n"
         "Root:Mid  /one /reg[0]\n"},
        {[this](Item &one, Item &) { // the nearest subclass only
             one.clearPropertyFormatsForClassInheritanceUpTo(root);
             one.clearPropertyFormatsForClassInheritanceUpTo(own);
             one.clearPropertyFormatsForClassInheritanceUpTo(QStringLiteral("Sibling"));
         },
         "Root  /one /reg[0]\n"
         "Root:Mid  /reg[0]\n"
         "Root:Mid:Own  /one /reg[0]\n"
         "Root:Mid:Sibling \n"},
    };
    for (const auto &[clear, expected] : cases) {
        storeAll();
        clear(one(own_), container(own_));
        preferences_.restart();
        EXPECT_EQ(left(), QString::fromLatin1(expected));
    }
}
} // namespace
