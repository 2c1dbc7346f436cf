// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "model/EntryPathList.h"

#include <QComboBox>

// A ladder of devices: each has two parents, which share the next one, so that the paths double at
// every rung.
class ManyPathsTest : public ExplorerFixture
{
protected:
    static constexpr int rungs = 25;

    void SetUp() override
    {
        registry_.plane("DxService", "Root\n  Host\n    foot")
            .plane("DxPower", "Root\n  Host\n    foot");
        FakeRegistry::Node rung = registry_["foot"];
        const auto add = [&](const char *name, int number) {
            const FakeRegistry::Node node =
                service_.add(QStringLiteral("DxRegistryEntry"), name + QByteArray::number(number));
            service_.link(registry_["Host"], node, "DxService");
            return node;
        };
        for (int i = 0; i < rungs; ++i) {
            const FakeRegistry::Node next = add("rung", i);
            for (const char *side : {"left", "right"}) {
                const FakeRegistry::Node middle = add(side, i);
                service_.link(rung, middle, "DxPower");
                service_.link(middle, next, "DxPower");
            }
            rung = next;
        }
        open();
    }
    static std::string pathBy(const QByteArray &side)
    {
        QByteArray path = "DxPower:/foot";
        for (int i = 0; i < rungs; ++i)
            path += '/' + side + QByteArray::number(i) + "/rung" + QByteArray::number(i);
        return path.toStdString();
    }
};

TEST_F(ManyPathsTest, AreListedInPartWhichIsSaid)
{
    auto &popup = *outlet<QComboBox>("entryPathsButton");
    controller_->goToRegistryPath(QStringLiteral("DxService:/rung24"));
    EXPECT_EQ(selected(), "DxService:/rung24");
    const int note = popup.count() - 1;
    EXPECT_GT(note, 100);
    EXPECT_LT(note, 10'000);
    EXPECT_EQ(popup.itemText(note),
              QStringLiteral("There are more paths in DxPower than are listed"));
    EXPECT_FALSE(popup.model()->index(note, 0).flags().testFlag(Qt::ItemIsEnabled));
    EXPECT_EQ(popup.itemText(2).toStdString(), pathBy("left"));

    EXPECT_EQ(controller_->nextEntryPathInPlane(false)->registryPath(), popup.itemText(2));
    EXPECT_EQ(controller_->prevEntryPathInPlane(false)->registryPath(), popup.itemText(note - 1));
    popup.setCurrentIndex(note - 1);
    EXPECT_EQ(controller_->nextEntryPathInPlane(false)->registryPath(), popup.itemText(0));
}

TEST_F(ManyPathsTest, OpenNoMoreRowsThanCanBeShown)
{
    constexpr int most = 20'000;
    showPlane("DxPower");
    const auto countRows = [this] {
        int count = 0;
        for (QModelIndex row = tree().model()->index(0, 0); row.isValid() && count <= most;
             row = tree().indexBelow(row))
            ++count;
        return count;
    };
    EXPECT_LT(countRows(), most);
    tree().setAllRowsExpanded(true);
    EXPECT_LE(countRows(), most);
    controller_->goToRegistryPath(QString::fromStdString(pathBy("right")));
    EXPECT_EQ(selected(), pathBy("right")); // which had not been opened
}

TEST_F(ManyPathsTest, AreFoundByWhatIsWritten)
{
    const QString plane = QStringLiteral("DxPower");
    const auto last = store_->entriesMatchingRegistryPath(QStringLiteral("DxService:/rung24"));
    ASSERT_EQ(last.entries.size(), 1);
    TavRegistryEntry &rung = **last.entries.begin();
    EntryPathList list(rung, plane);
    EXPECT_FALSE(list.isWhole());
    const std::size_t count = list.paths().size();
    for (const std::string &written : {pathBy("left"), pathBy("right")}) {
        const auto paths = EntryPathList::writtenAs(rung, QString::fromStdString(written));
        ASSERT_EQ(paths.size(), 1U) << written;
        EXPECT_EQ(paths.front().registryPath().toStdString(), written);
        list.add(paths.front());
    }
    EXPECT_EQ(list.paths().size(), count + 1); // the last in the order was not listed
    EXPECT_EQ(list.paths().back().registryPath().toStdString(), pathBy("right"));
    for (const char *wrong : {"DxPower:/rung24", "DxPower:/", "DxBus:/foot", "rung24", ""})
        EXPECT_TRUE(EntryPathList::writtenAs(rung, QString::fromUtf8(wrong)).empty()) << wrong;
    EXPECT_EQ(EntryPathList::writtenAs(*entry("Host"), QStringLiteral("DxPower:/")).size(), 1U);
}
