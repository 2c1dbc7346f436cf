// SPDX-License-Identifier: Apache-2.0
#include "activity/PropertyChanges.h"
#include "cli/NearestText.h"
#include "cli/TextTable.h"
#include "tests/support/QtPrinters.h"
#include "tests/support/RegistryValues.h"

#include <QBuffer>
#include <gtest/gtest.h>

using namespace values;

namespace {
std::string written(const TextTable &table, const Terminal &terminal)
{
    QByteArray bytes;
    QBuffer device(&bytes);
    device.open(QIODevice::WriteOnly);
    CommandOutput output(device, terminal, CommandOutput::Format::Text, {});
    table.write(output);
    output.finish();
    return bytes.toStdString();
}

TEST(NearestText, IsTheOneWithTheFewestDifferences)
{
    const QStringList names{QStringLiteral("tree"), QStringLiteral("driver"),
                            QStringLiteral("paths"), QStringLiteral("planes")};
    const auto nearest = [&](const char *text) {
        return NearestText::among(names, QString::fromLatin1(text)).toStdString();
    };
    EXPECT_EQ(nearest("tre"), "tree");
    EXPECT_EQ(nearest("rtee"), "tree");
    EXPECT_EQ(nearest("DRIVR"), "driver");
    EXPECT_EQ(nearest("path"), "paths");
    EXPECT_EQ(nearest("export"), "");
    EXPECT_EQ(nearest(""), "");
    EXPECT_EQ(NearestText::among(names, QString(1'000'000, u'x')), QString());
}

TEST(TextTable, FitsTheTerminalAndCannotControlIt)
{
    TextTable table;
    table.add({{QStringLiteral("a\x1b[2J")},
               {QStringLiteral("7"), TextRole::Plain, true},
               {QStringLiteral("a long text at the end")}});
    table.add({{QStringLiteral("longer name")},
               {QStringLiteral("1234"), TextRole::Plain, true},
               {QStringLiteral("end")}});
    EXPECT_EQ(written(table, {}), "a\\x1b[2J\t7\ta long text at the end\n"
                                  "longer name\t1234\tend\n");
    const Terminal terminal{.isTerminal = true, .hasColors = false, .isUtf8 = false, .columns = 30};
    EXPECT_EQ(written(table, terminal), "a\\x1b[2J        7  a lo... end\n"
                                        "longer name  1234  end\n");
}

TEST(PropertyChange, NamesTheScalarsThatDiffer)
{
    const RegistryValue before =
        dictionary({{"same", number(1)},
                    {"gone", text("x")},
                    {"power", dictionary({{"status", text("active")}, {"count", number(5)}})}});
    const RegistryValue after =
        dictionary({{"same", number(1)},
                    {"list", array({number(1)})},
                    {"power", dictionary({{"status", text("suspended")}, {"count", number(5)}})}});
    const auto changes = PropertyChange::between(before, after);
    ASSERT_EQ(changes.size(), 3U);
    EXPECT_EQ(changes[0].key, QStringLiteral("gone"));
    EXPECT_TRUE(changes[0].after.isNone());
    EXPECT_EQ(changes[1].key, QStringLiteral("list"));
    EXPECT_TRUE(changes[1].before.isNone());
    EXPECT_EQ(changes[2].key, QStringLiteral("power/status"));
    EXPECT_EQ(changes[2].after, text("suspended"));
    EXPECT_TRUE(PropertyChange::between(before, before).empty());
}
} // namespace
