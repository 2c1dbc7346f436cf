// SPDX-License-Identifier: Apache-2.0
#include "platform/text/NaturalOrder.h"

#include <QString>
#include <gtest/gtest.h>

TEST(NaturalOrder, CountsAsPeopleDo)
{
    // Each list is in order; each text is compared with every other one.
    const std::vector<std::vector<QStringView>> lists{
        {u"", u"cpu", u"cpu0", u"cpu2", u"CPU10", u"cpu10b", u"cpufreq"},
        {u"nvme0n1", u"nvme0n1p2", u"nvme0n1p10", u"nvme2n1", u"nvme10n1"},
        {u"0000:00:02.0", u"0000:00:0a.0", u"0000:00:14.0", u"0000:00:1f.0", u"0000:00:1f.6",
         u"0000:9f:00.0", u"0000:e1:00.0"},
        {u"1-4", u"1-4.2", u"1-4.10", u"1-10", u"2-1"},
        {u"8:2", u"8:10", u"10:1"},
        {u"a-1", u"a1", u"ab", u"b"},
        {u"2", u"9", u"10", u"1f", u"99999999999999999998", u"99999999999999999999"},
        {u"Ä1", u"ä2", u"Ä10"},
    };
    for (const auto &list : lists) {
        for (std::size_t i = 0; i < list.size(); ++i) {
            for (std::size_t j = 0; j < list.size(); ++j) {
                const int order = compareNaturally(list[i], list[j]);
                EXPECT_EQ(order < 0, i < j)
                    << qPrintable(list[i].toString()) << " and " << qPrintable(list[j].toString());
                EXPECT_EQ(order > 0, i > j)
                    << qPrintable(list[i].toString()) << " and " << qPrintable(list[j].toString());
            }
        }
    }
    EXPECT_EQ(compareNaturally(u"TTY007", u"tty7"), 0);
}
