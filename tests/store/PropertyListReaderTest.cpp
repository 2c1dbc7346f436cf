// SPDX-License-Identifier: Apache-2.0
#include "store/PropertyListReader.h"
#include "tests/support/RegistryValues.h"

#include <gtest/gtest.h>

using namespace values;

namespace {
RegistryValue read(const QByteArray &content)
{
    return PropertyListReader::read("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                    "<!DOCTYPE plist>\n"
                                    "<plist version=\"1.0\">" +
                                    content + "</plist>");
}
} // namespace

TEST(PropertyListReader, ReadsEveryElement)
{
    const QDateTime date(QDate(2005, 8, 1), QTime(12, 30, 45), Qt::UTC);
    const std::pair<QByteArray, RegistryValue> cases[] = {
        {"<string>a &lt;&amp;&gt; &quot;&apos; &#xe4; <![CDATA[<b>]]></string>",
         text("a <&> \"' ä <b>")},
        {"<string/>", text("")},
        {"<integer>42</integer>", number(42, 8)},
        {"<integer> 010 </integer>", number(10, 8)},
        {"<integer>0xFF</integer>", number(255, 8)},
        {"<integer>18446744073709551615</integer>", number(~quint64(0), 8)},
        {"<integer>-2</integer>", negative(-2, 8)},
        {"<real>1.50</real>", text("1.50")},
        {"<true/>", RegistryValue::boolean(true)},
        {"<false></false>", RegistryValue::boolean(false)},
        {"<data>\n\tAAEC\n\t/w==\n</data>", RegistryValue::data(QByteArray("\0\1\2\xff", 4))},
        {"<date>2005-08-01T12:30:45Z</date>", RegistryValue::date(date)},
        {"<array/>", array({})},
        {"<dict>\n<key>b</key><array><true/><dict/></array>\n<!-- c --><key/><false/></dict>",
         dictionary({
             {"b", array({RegistryValue::boolean(true), dictionary({})})},
             {"", RegistryValue::boolean(false)},
         })},
    };
    for (const auto &[xml, value] : cases)
        EXPECT_TRUE(read(xml) == value) << xml.constData();
}

TEST(PropertyListReader, RefusesOtherTexts)
{
    const QByteArray unreadable[] = {"",
                                     "<true/><true/>",
                                     "<other/>",
                                     "text",
                                     "<true>x</true>",
                                     "<array>text</array>",
                                     "<string><true/></string>",
                                     "<integer>1.5</integer>",
                                     "<integer>18446744073709551616</integer>",
                                     "<integer>-0x</integer>",
                                     "<real>x</real>",
                                     "<data>A</data>",
                                     "<data>AB*=</data>",
                                     "<date>yesterday</date>",
                                     "<date>2005-08-01T12:30:45</date>",
                                     "<dict><key>a</key></dict>",
                                     "<dict><true/><key>a</key></dict>",
                                     "<dict><key>a</key><true/><key>a</key><true/></dict>",
                                     "<string>&unknown;</string>",
                                     "<array>"};
    for (const QByteArray &xml : unreadable)
        EXPECT_TRUE(read(xml).isNone()) << xml.constData();
    EXPECT_TRUE(PropertyListReader::read("<dict/>").isNone());
    EXPECT_TRUE(PropertyListReader::read("<plist><true/></plist>x").isNone());
    EXPECT_TRUE(PropertyListReader::read(QByteArray("\0\xff", 2)).isNone());
}

TEST(PropertyListReader, ExpandsNoEntitiesAndFetchesNothing)
{
    const QByteArray bomb = "<!DOCTYPE plist [<!ENTITY a \"aaaaaaaaaa\"><!ENTITY b \"&a;&a;\">]>"
                            "<plist><string>&b;</string></plist>";
    const QByteArray file = "<!DOCTYPE plist [<!ENTITY a SYSTEM \"/etc/hostname\">]>"
                            "<plist><string>&a;</string></plist>";
    EXPECT_TRUE(PropertyListReader::read(bomb).isNone());
    EXPECT_TRUE(PropertyListReader::read(file).isNone());
    // Nor where a comment seems to have ended.
    const QByteArray hidden = "<![CDATA[--><!DOCTYPE plist [<!ENTITY a \"b\"><!ENTITY z \"]]>\">]>"
                              "<plist><string>&a;</string></plist>";
    EXPECT_TRUE(PropertyListReader::read("<!-->" + hidden).isNone());
    EXPECT_TRUE(PropertyListReader::read("<!--->" + hidden).isNone());
    EXPECT_TRUE(PropertyListReader::read("<?><plist><true/></plist>").isNone());
}

TEST(PropertyListReader, RefusesWhatWouldTakeLong)
{
    // Each of these would take the stream reader minutes.
    QByteArray attributes = "<plist";
    QByteArray declarations = "<!DOCTYPE plist [";
    for (int i = 0; i < 50'000; ++i) {
        const QByteArray name = 'a' + QByteArray::number(i);
        attributes += ' ' + name + "='>'";
        declarations += "<!ATTLIST plist " + name + " CDATA ''>";
    }
    EXPECT_TRUE(PropertyListReader::read(attributes + "><true/></plist>").isNone());
    EXPECT_TRUE(PropertyListReader::read(declarations + "]><plist><true/></plist>").isNone());
    EXPECT_TRUE(PropertyListReader::read("<plist><string>\xff</string></plist>").isNone());
    const QByteArray longText = QByteArray("<b 'c > ").repeated(100'000);
    EXPECT_EQ(read("<!-- " + longText + "--><string><![CDATA[" + longText + "]]></string>"),
              RegistryValue::string(QString::fromLatin1(longText)));
}

TEST(PropertyListReader, BoundsDepth)
{
    const auto nested = [](int depth, const QByteArray &innermost = {}) {
        return read(QByteArray("<array>").repeated(depth) + innermost +
                    QByteArray("</array>").repeated(depth));
    };
    EXPECT_FALSE(nested(64, "<true/>").isNone());
    EXPECT_TRUE(nested(65).isNone());
    EXPECT_TRUE(nested(64, "<dict/>").isNone());
    EXPECT_TRUE(nested(1000).isNone());
    EXPECT_TRUE(read(QByteArray("<array>").repeated(1'000'000)).isNone());
}
