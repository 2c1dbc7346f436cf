// SPDX-License-Identifier: Apache-2.0
#include "store/filter/FilterExpression.h"
#include "store/filter/KeysOccurring.h"
#include "tests/support/RegistryTest.h"
#include "tests/support/RegistryValues.h"

#include <QElapsedTimer>

using namespace values;

namespace {
class FilterTest : public RegistryTest
{
protected:
    FilterTest()
    {
        service_.addClass(QStringLiteral("DxPciNetwork"), QStringLiteral("DxPciDevice"),
                          QStringLiteral("e1000e"));
        tree_.plane("DxService", R"(
            Root
              Host : DxHost : DxService
                card@0000:02:00.0 : DxPciNetwork : DxPciDevice : DxService
                  eth0 : DxNetDevice : DxService
                hub@usb1 : DxUsbDevice : DxService
                  stick@1-4 : DxUsbDevice : DxService
        )");
        tree_.plane("DxPower", R"(
            Root
              stick@1-4
                led : DxLed : DxService
        )");
        const auto choice = dictionary(
            {{"choices", array({text("none"), text("bfq")})}, {"selected", text("bfq")}});
        set("card@0000:02:00.0", {{"vendor", number(0x8086, 2)},
                                  {"class", number(0x20000)},
                                  {"driver", text("e1000e")},
                                  {"current_link_speed", text("2.5 GT/s PCIe")},
                                  {"max_link_speed", text("8.0 GT/s PCIe")}});
        set("hub@usb1", {{"vendor", number(0x1d6b, 2)},
                         {"speed", text("480")},
                         {"max_speed", number(5000)},
                         {"removable", text("fixed")},
                         {"bMaxPower", text("0mA")},
                         {"scheduler", choice}});
        set("stick@1-4", {{"speed", text("480")},
                          {"max_speed", text("480")},
                          {"removable", text("removable")},
                          {"bMaxPower", text("500mA")},
                          {"bInterfaceClass", text("0a")},
                          {"current_link_speed", text("16.0 GT/s PCIe")},
                          {"max_link_speed", text("Unknown")}});
        set("eth0",
            {{"power", dictionary({{"runtime_status", text("active")}, {"speed", number(1)}})},
             {"numa", negative(-1)},
             {"carrier", RegistryValue::boolean(false)},
             {"list", array({number(3), array({text("deep")})})},
             {"queues", array({dictionary({{"id", number(7)}}), dictionary({{"id", number(8)}})})},
             {"hidden", RegistryValue::set({dictionary({{"secret", text("x")}})})},
             {"eui", data("deadbeef")},
             {"empty", text("")},
             {"seen", RegistryValue::date(QDateTime({2024, 5, 1}, {12, 0}, Qt::UTC))}});
        service_.setBusyCount(tree_["led"], 1);
        capture();
    }
    void set(const char *label, std::initializer_list<std::pair<const char *, RegistryValue>> items)
    {
        service_.setProperties(tree_[label], dictionary(items));
    }
    // The names of the entries that an expression finds, or what is wrong with it:
    // "position+length".
    std::string found(const char *text, QHash<QString, EntrySet> *parents = nullptr)
    {
        auto filter = FilterExpression::parse(QString::fromUtf8(text));
        if (!filter)
            return std::to_string(filter.error().position) + '+' +
                   std::to_string(filter.error().length);
        EntrySet matches;
        EXPECT_TRUE(store_->runFilter(*filter, &matches, parents)) << text;
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
    struct Row
    {
        const char *expression;
        const char *expected;
    };
    void expect(std::initializer_list<Row> rows)
    {
        for (const auto &[expression, expected] : rows)
            EXPECT_EQ(found(expression), expected) << expression;
    }
};
} // namespace

TEST_F(FilterTest, ComparesByValueInAnyBaseAndUnit)
{
    expect({
        {"vendor == 0x8086", "card"},
        {"vendor = 32902", "card"},
        {"vendor == 0o100206 or vendor == 0b1110101101011", "card hub"},
        {"speed == 480", "hub stick"},
        {"speed == 0x1e0", "hub stick"},
        {"speed < max_speed", "hub"},
        {"current_link_speed < max_link_speed", "card"}, // not the unknown one
        {"current_link_speed <= 2.50", "card"},
        {"current_link_speed > 5", "stick"},
        {"bMaxPower > 100", "stick"},
        {"bMaxPower >= 500mA", "stick"},
        {"bMaxPower >= 500mW", ""},
        {"bInterfaceClass == 0", ""},
        {"bInterfaceClass == 0a", "stick"},
        {"numa == -1", "eth0"},
        {"numa < 0", "eth0"},
        {"numa == 0xffffffff", ""},
        {"carrier == false or carrier == 1", "eth0"},
        {"carrier == 0", "eth0"},
        {"eui == 'de ad be ef'", "eth0"},
        {"eui == 0xDEADBEEF", "eth0"},
        {"seen > 2024-05-01 and seen < \"2024-05-03\"", "eth0"},
        {"removable < zzz", ""}, // texts have no order
        {"driver == E1000E", ""},
        {"driver ~ E1000", "card"},
        {"vendor ~ 808", "card"}, // as the kernel writes it
        {"vendor in (1, 0x8086, 0x1d6b)", "card hub"},
        {"vendor != 0x8086", "hub"}, // those without one have no other either
        {"not vendor == 0x8086", "Host Root eth0 hub led stick"},
        {"scheduler == bfq", "hub"},
        {"scheduler == none", ""},
        {"scheduler/choices == none", "hub"},
        {"driver =~ '^e\\d+e$'", "card"},
        {"driver =~ E1000", ""},
        {"driver =~ \"(?i)E1000\"", "card"},
    });
}

TEST_F(FilterTest, FindsKeysNearestToTheTop)
{
    expect({
        {"speed", "eth0 hub stick"},
        {"speed == 1", "eth0"},
        {"power/speed == 1", "eth0"},
        {"runtime_status == active", "eth0"},
        {"power/runtime_status == active", "eth0"},
        {"runtime_status/power", ""},
        {"Power", ""},
        {"list == 3", "eth0"},
        {"list != 3", ""},
        {"list ~ EE", "eth0"},
        {"queues/id == 8 and id == 7 and not id == 9", "eth0"},
        {"secret", ""},
        {"carrier", ""}, // it is false
        {"exists(carrier)", "eth0"},
        {"empty and numa", "eth0"},
        // A word is a key where the entry has it, quotes make a text, "@" and prop() a key.
        {"removable == removable", "hub stick"},
        {"removable == \"removable\"", "stick"},
        {"speed == @max_speed", "stick"},
        {"speed == prop(nowhere) or speed != prop(\"nowhere\")", ""},
        {"class == 0x20000", ""},
        {"@class == 0x20000", "card"},
        {"prop('class') == 0x20000", "card"},
    });
    const QStringList keys = keysOccurring(*store_);
    EXPECT_TRUE(keys.contains(QStringLiteral("power/runtime_status")));
    EXPECT_TRUE(keys.contains(QStringLiteral("queues/id")));
    EXPECT_FALSE(keys.contains(QStringLiteral("hidden/secret")));
}

TEST_F(FilterTest, KnowsTheFactsOfEntries)
{
    expect({
        {"name == card", "card"},
        {"name == card@0000:02:00.0", "card"},
        {"name ~ CARD@0", "card"},
        {"class ~ dxpci", "card"},
        {"class == DxPciDevice", ""},
        {"inheritance == DxPciDevice", "card"},
        {"bundle == e1000e and bundle", "card"},
        {"state == busy", "led"},
        {"state in (busy, terminated)", "led"},
        {"state != registered", ""},
        {"plane == DxPower", "Root led stick"},
        {"plane == DxPower and plane == DxService", "Root stick"},
        {"path == 'DxService:/Host/hub@usb1/stick@1-4'", "stick"},
        {"path ~ dxpower:/", "led stick"},
        {"under(usb1)", "stick"}, // the LED is below the stick in another plane
        {"under(hub@usb1) and removable == \"removable\"", "stick"},
        {"under(1-4)", "led"},
        {"under(0000:02:00.0) or under(nowhere)", "eth0"},
        {"under(Root)", "Host card eth0 hub led stick"},
    });
}

TEST_F(FilterTest, CombinesAndSharesTheMarksOfASearch)
{
    expect({
        {"vendor == 0x8086 and class ~ DxPci and not driver", ""},
        {"driver or speed == 480 and not removable == \"fixed\"", "card stick"},
        {"(driver or speed == 480) and not removable == \"fixed\"", "card stick"},
        {"(driver or speed == 480) and (not vendor)", "stick"},
        {"not not driver", "card"},
    });
    QHash<QString, EntrySet> parents;
    EXPECT_EQ(found("max_speed == 480", &parents), "stick");
    EXPECT_EQ(names(parents[QStringLiteral("DxService")]), "Host Root hub");
    EXPECT_EQ(names(parents[QStringLiteral("DxPower")]), "Root");
    EXPECT_TRUE(entry("stick@1-4").matchesLastQuery());
    found("driver");
    EXPECT_FALSE(entry("stick@1-4").matchesLastQuery());
}

TEST_F(FilterTest, SaysWhereAnExpressionIsWrong)
{
    expect({
        {"", "0+0"},
        {"speed ==", "6+2"},
        {"speed == 1 and", "11+3"},
        {"speed == 1 speed", "11+5"},
        {"speed == == 1", "6+2"},
        {"(speed == 1", "0+1"},
        {"speed == 1)", "10+1"},
        {"speed in 1", "6+2"},
        {"speed in (1, )", "11+1"},
        {"exists(speed", "6+1"},
        {"size(speed)", "0+4"},
        {"\"speed\" == 1", "0+7"},
        {"480 == speed", "0+3"},
        {"!speed", "0+1"},
        {"speed == \"1", "9+2"},
        {"name =~ \"a(b\"", "11+1"},
        {"state == asleep", "9+6"},
        {"@ == 1", "0+1"},
        {"speed and or", "10+2"},
    });
}

TEST_F(FilterTest, EndsSoonWhateverItIsAsked)
{
    QElapsedTimer timer;
    timer.start();
    for (const char *part : {"(", "not ", "a and ", "a or (", "prop(", "'"}) {
        const QString text = QString::fromLatin1(part).repeated(100'000);
        EXPECT_FALSE(FilterExpression::parse(text)) << part;
        FilterExpression::parse(text.first(FilterExpression::maxSize));
    }
    EXPECT_TRUE(FilterExpression::parse(QStringLiteral("a or ").repeated(1000) + u'a'));
    for (int i = 0; i < 40; ++i) {
        const auto node = service_.add(QStringLiteral("DxDevice"), "slow");
        service_.setProperties(node,
                               dictionary({{"slow", RegistryValue::string(QString(4000, u'a'))}}));
        service_.link(tree_["Host"], node, "DxService");
    }
    store_->update();
    auto filter = FilterExpression::parse(QStringLiteral("slow =~ '((a+)+(a|a)*)+[bc]$'"));
    ASSERT_TRUE(filter);
    EntrySet matches;
    EXPECT_FALSE(store_->runFilter(*filter, &matches, nullptr)); // and it says so
    EXPECT_LT(timer.elapsed(), 60'000);                          // unbounded, it would take years
}
