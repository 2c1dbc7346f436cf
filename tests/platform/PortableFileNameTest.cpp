// SPDX-License-Identifier: Apache-2.0
#include "platform/documents/PortableFileName.h"

#include "tests/support/QtPrinters.h"

#include <gtest/gtest.h>

TEST(PortableFileName, KeepsWhatIsHarmlessEverywhere)
{
    const std::pair<const char *, const char *> cases[] = {
        {"host 2026-11-22 14.05.33", "host 2026-11-22 14.05.33"},
        {"Zoë’s PC: a/b", "Zoë-s PC- a-b"},
        {"-rf $HOME\n*", "rf -HOME--"},
        {" .. hidden", "hidden"},
        {"//", "Untitled"},
        {"", "Untitled"},
    };
    for (const auto &[text, name] : cases)
        EXPECT_EQ(portableFileName(QString::fromUtf8(text)), QString::fromUtf8(name));
    EXPECT_LT(portableFileName(QString(300, QChar(0x6f22))).toUtf8().size(), 250);
}
