#include "app/CommandLine.h"

#include "tests/support/QtPrinters.h"

#include <gmock/gmock.h>

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
    EXPECT_EQ(plain.action, CommandLine::Action::Run);
    EXPECT_EQ(plain.sysfsRoot, QStringLiteral("/sys"));
    EXPECT_EQ(plain.theme, std::nullopt);
    const CommandLine told = parse("--sysfs /a --theme dark --plane DxBus --select DxBus:/pci "
                                   "--screenshot b.png c.vandrel d");
    EXPECT_EQ(told.sysfsRoot, QStringLiteral("/a"));
    EXPECT_EQ(told.theme, Theme::Dark);
    EXPECT_EQ(told.plane, QStringLiteral("DxBus"));
    EXPECT_EQ(told.selectedPath, QStringLiteral("DxBus:/pci"));
    EXPECT_EQ(told.screenshotFile, QStringLiteral("b.png"));
    EXPECT_EQ(told.files, QStringList({QStringLiteral("c.vandrel"), QStringLiteral("d")}));
}

TEST(CommandLine, ShowsHelpAndVersion)
{
    const CommandLine help = parse("--help");
    EXPECT_EQ(help.action, CommandLine::Action::ShowText);
    for (const char *option : {"--sysfs", "--theme", "--plane", "--select", "--screenshot",
                               "--capture", "--new-instance"})
        EXPECT_THAT(help.text.toStdString(), testing::HasSubstr(option));
    const CommandLine version = parse("-v");
    EXPECT_EQ(version.action, CommandLine::Action::ShowText);
    EXPECT_EQ(version.text, QStringLiteral("Vandrel " VANDREL_VERSION));
}

TEST(CommandLine, LeavesPlainFilesToTheRunningCopy)
{
    EXPECT_TRUE(parse("a.vandrel b.vandrel").isForRunningCopy);
    EXPECT_FALSE(CommandLine::parse({QStringLiteral("vandrel")}).isForRunningCopy);
    for (const char *option : {"--new-instance", "--theme dark", "--sysfs /sys", "--plane DxBus",
                               "--select DxBus:/", "--screenshot b.png"})
        EXPECT_FALSE(parse((option + std::string(" a.vandrel")).c_str()).isForRunningCopy)
            << option;
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    for (const char *options : {"--theme pink", "--nonsense", "--sysfs", "--capture ",
                                "--capture a --plane DxBus", "--capture a --new-instance"}) {
        const CommandLine line = parse(options);
        EXPECT_EQ(line.action, CommandLine::Action::Fail) << options;
        EXPECT_FALSE(line.text.isEmpty()) << options;
    }
}
