// SPDX-License-Identifier: Apache-2.0
#include "app/CommandLine.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

namespace {
CommandLine parse(const char *options)
{
    return CommandLine::parse(
        QString::fromLatin1(options).prepend(QLatin1String("vandrel ")).split(u' '));
}
} // namespace

TEST(CommandLine, RunsOnThisMachineUnlessToldOtherwise)
{
    const CommandLine plain = CommandLine::parse({QStringLiteral("vandrel")});
    EXPECT_EQ(plain.sysfsRoot, QStringLiteral("/sys"));
    EXPECT_EQ(plain.theme, std::nullopt);
    EXPECT_EQ(parse("--theme dark a").theme, Theme::Dark);
    EXPECT_EQ(parse("-v").action, CommandLine::Action::ShowText);
}

TEST(CommandLine, LeavesPlainFilesToTheRunningCopy)
{
    EXPECT_TRUE(parse("a.vandrel b.vandrel").isForRunningCopy);
    EXPECT_TRUE(parse("--new-window").isForRunningCopy);
    EXPECT_FALSE(parse("--compare a b").isForRunningCopy);
    EXPECT_FALSE(CommandLine::parse({QStringLiteral("vandrel")}).isForRunningCopy);
    for (const char *option : {"--new-instance", "--theme dark", "--sysfs /sys", "--plane DxBus",
                               "--select DxBus:/", "--screenshot b.png"})
        EXPECT_FALSE(parse((option + std::string(" a.vandrel")).c_str()).isForRunningCopy)
            << option;
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    for (const char *options :
         {"--theme pink", "--nonsense", "--sysfs", "--capture ", "--capture a --plane DxBus",
          "--capture a --new-instance", "--compare a", "--new-window a"}) {
        const CommandLine line = parse(options);
        EXPECT_EQ(line.action, CommandLine::Action::Fail) << options;
        EXPECT_FALSE(line.text.isEmpty()) << options;
    }
}
