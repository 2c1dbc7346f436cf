// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"
#include "activity/DocumentActivity.h"
#include "explorer/plots/PlotTable.h"
#include "explorer/plots/PlotView.h"

// A window whose entry's values are read again and again.
class FollowedValuesTest : public PropertiesFixture
{
protected:
    void SetUp() override
    {
        PropertiesFixture::SetUp();
        prefer("FollowInterval", 200);
        prefer("ShowSparklines", QStringLiteral("yes"));
        service_.setKernelPath(registry_["Host"], QStringLiteral("/sys/devices/host"));
        update();
    }
    void setSize(quint64 size)
    {
        setTable({{"list", values::array({values::text("one"), values::number(size)})},
                  {"name", values::text("a word")},
                  {"size", values::number(size)}});
    }
    std::string size() const { return row({2}, value).data().toString().toStdString(); }
    bool waitForSize(const char *text)
    {
        return QTest::qWaitFor([&] { return size() == text; });
    }
    QString toolTip() const { return row({2}, value).data(Qt::ToolTipRole).toString(); }
    bool waitForSamples(int count)
    {
        const int enough = service_.samples() + count;
        return QTest::qWaitFor([&] { return service_.samples() >= enough; });
    }
    Plots &plots() { return DocumentActivity::of(*document_).plots(); }
    void choose(const QModelIndex &index, const char *text)
    {
        auto *const menu = new PropertiesContextMenu(*view_, index);
        for (QAction *const item : menu->actions()) {
            if (item->text().remove(u'&') == QLatin1String(text))
                item->trigger();
        }
        delete menu;
    }
};

TEST_F(FollowedValuesTest, AreShownWithWhatTheyWereAndLeaveTheStoreAlone)
{
    const RegistryValue stored = entry("Host")->table();
    const QDateTime read = store_->lastUpdateDate();
    action("toggleFollowValuesAction").trigger();
    clickArrow({0});
    selectRow({2}, value);
    setSize(7);
    ASSERT_TRUE(waitForSize("0x7"));
    EXPECT_TRUE(toolTip().contains(QStringLiteral("was 0x5"))) << qPrintable(toolTip());
    EXPECT_TRUE(row({2}, value).data(Qt::BackgroundRole).isValid());
    EXPECT_FALSE(row({1}, value).data(Qt::BackgroundRole).isValid());
    EXPECT_EQ(view_->currentIndex(), row({2}, value));
    EXPECT_TRUE(view_->isExpanded(row({0})));
    EXPECT_TRUE(entry("Host")->table().isSameCollectionAs(stored));
    EXPECT_EQ(store_->lastUpdateDate(), read);

    window().hide();
    QTest::qWait(100);
    const int before = service_.samples();
    QTest::qWait(500);
    EXPECT_EQ(service_.samples(), before);
    window().show();
    EXPECT_TRUE(waitForSamples(1));

    action("togglePauseAction").trigger();
    setSize(8);
    QTest::qWait(500);
    EXPECT_EQ(size(), "0x7");
    action("togglePauseAction").trigger();
    EXPECT_TRUE(waitForSize("0x8"));
    action("toggleFollowValuesAction").trigger();
}

TEST_F(FollowedValuesTest, NumberIsPlottedFromItsMenu)
{
    choose(row({1}, value), "Plot"); // a text: not offered
    EXPECT_TRUE(plots().lines().empty());
    choose(row({2}, value), "Plot");
    ASSERT_EQ(plots().lines().size(), 1U);
    auto *const table = outlet<PlotTable>("plotTable");
    auto *const view = outlet<PlotView>("plotView");
    EXPECT_TRUE(view->isVisible());
    EXPECT_TRUE(action("togglePlotsAction").isChecked());
    ASSERT_TRUE(waitForSamples(2));
    setSize(9);
    ASSERT_TRUE(QTest::qWaitFor([&] { return table->item(0, 5)->text() == QLatin1String("9"); }));
    EXPECT_EQ(table->item(0, 3)->text(), QStringLiteral("5"));
    EXPECT_EQ(table->item(0, 6)->text(), QStringLiteral("DxService:/"));
    EXPECT_NE(view_->dataSource()->sparkline(row({2}, value)), nullptr);
    action("toggleSparklinesAction").trigger();
    EXPECT_EQ(view_->dataSource()->sparkline(row({2}, value)), nullptr);
    window().grab();

    table->setFocus();
    QTest::keyClick(table, Qt::Key_Space);
    EXPECT_EQ(plots().lines()[0]->reading, PlotSeries::Reading::Rate);
    choose(row({2}, value), "Stop Plotting");
    EXPECT_TRUE(plots().lines().empty());
    EXPECT_EQ(table->rowCount(), 0);
    action("toggleSparklinesAction").trigger();
}

TEST_F(FollowedValuesTest, PlotsAreZoomedAndMovedByKeys)
{
    choose(row({2}, value), "Plot");
    ASSERT_TRUE(waitForSamples(2));
    auto *const view = outlet<PlotView>("plotView");
    const qint64 span = view->span();
    QTest::keyClick(view, Qt::Key_Minus);
    EXPECT_GT(view->span(), span);
    while (view->span() > PlotView::shortestSpan)
        QTest::keyClick(view, Qt::Key_Plus);
    EXPECT_TRUE(view->followsNow());
    QTest::qWait(300);
    action("togglePauseAction").trigger();
    const qint64 now = view->until();
    QTest::qWait(50);
    EXPECT_EQ(view->until(), now);
    action("togglePauseAction").trigger();
    EXPECT_GT(view->until(), now);
}
