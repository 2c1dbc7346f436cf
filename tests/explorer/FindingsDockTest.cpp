// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"
#include "explorer/findings/DocumentFindings.h"
#include "platform/widgets/SearchField.h"

#include <QTableView>
#include <QTextBrowser>
#include <QToolButton>

// A window on a host with what checks find.
class FindingsDockTest : public PropertiesFixture
{
protected:
    static RegistryValue power(const char *status)
    {
        return values::dictionary({{"runtime_status", values::text(status)}});
    }
    std::string button() const
    {
        const auto *const button = outlet<QToolButton>("findingsButton");
        return button->isHidden() ? "" : button->text().toStdString();
    }
    bool waitForButton(const char *text)
    {
        return QTest::qWaitFor([&] { return button() == text; });
    }
};

TEST_F(FindingsDockTest, FollowsTheRegistryAndLeadsToWhatItRestsOn)
{
    setTable({{"power", power("error")}, {"waiting_for_supplier", values::number(1)}});
    update();
    ASSERT_TRUE(waitForButton("2 warnings"));
    selectNothing();
    outlet<QToolButton>("findingsButton")->click();
    auto *const table = outlet<QTableView>("findingsTable");
    const auto title = [&](int row) {
        return table->model()->index(row, 1).data().toString().toStdString();
    };
    EXPECT_TRUE(action("toggleFindingsAction").isChecked());
    ASSERT_EQ(table->model()->rowCount(), 2);
    EXPECT_EQ(title(0), "Power management of a device failed");
    EXPECT_EQ(title(1), "Device waits for another one");

    auto *const explanation = outlet<QTextBrowser>("findingExplanation");
    table->selectRow(0);
    EXPECT_TRUE(explanation->toPlainText().contains(QStringLiteral("What to do:")));
    Q_EMIT explanation->anchorClicked(QUrl(QStringLiteral("power/runtime_status")));
    EXPECT_EQ(selected(), "DxService:/");
    EXPECT_EQ(view_->currentIndex().siblingAtColumn(0).data().toString(),
              QStringLiteral("runtime_status"));
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied().find("warning: Power management of a device failed\nDxService:/\n"), 0U);

    auto *const filter = outlet<SearchField>("findingsFilterField");
    filter->setText(QStringLiteral("WAITS"));
    QTest::keyClick(filter, Qt::Key_Return);
    EXPECT_EQ(table->model()->rowCount(), 1);

    setTable({{"power", power("active")}});
    update();
    EXPECT_TRUE(waitForButton(""));
    EXPECT_EQ(table->model()->rowCount(), 0);
}

TEST_F(FindingsDockTest, MarksRowsAndAnswersToStateWords)
{
    prefer("ShowFindingSigns", QStringLiteral("yes"));
    const auto rootRow = [&] { return ExplorerFixture::row({"Root"}); };
    const auto says = [&](const char *text) {
        return rootRow().data(Qt::ToolTipRole).toString().contains(QLatin1String(text));
    };
    const qint64 plain = rootRow().data(Qt::DecorationRole).value<QIcon>().cacheKey();
    setTable({{"power", power("error")}});
    update();
    ASSERT_TRUE(waitForButton("1 warning"));
    const QModelIndex hostRow = ExplorerFixture::row({"Root", "Host"});
    EXPECT_TRUE(hostRow.data(Qt::ToolTipRole)
                    .toString()
                    .contains(QStringLiteral("Power management of a device failed")));
    EXPECT_TRUE(says("A warning below"));
    EXPECT_NE(rootRow().data(Qt::DecorationRole).value<QIcon>().cacheKey(), plain);
    TavRegistryEntry &host = *entry("Host");
    EXPECT_TRUE(host.matchesSpecial(QStringLiteral("warning")));
    EXPECT_TRUE(host.matchesSpecial(QStringLiteral("not error")));
    action("toggleFindingSignsAction").trigger();
    EXPECT_FALSE(says("A warning below"));
    EXPECT_EQ(rootRow().data(Qt::DecorationRole).value<QIcon>().cacheKey(), plain);
}

TEST_F(FindingsDockTest, MarksTheEntriesOfASnapshot)
{
    setTable({{"power", power("error")}});
    update();
    openArchived();
    ASSERT_TRUE(waitForButton("1 warning"));
    EXPECT_EQ(entry("Host")->worstFinding(), Severity::Warning);
    selectNothing();
    action("toggleFindingsAction").trigger();
    QTest::keyClick(outlet<QTableView>("findingsTable"), Qt::Key_Return);
    EXPECT_EQ(selected(), "DxService:/");
}

TEST_F(FindingsDockTest, HidesWhatIsNotToBeShownAgain)
{
    setTable({{"power", power("error")}, {"waiting_for_supplier", values::number(1)}});
    update();
    ASSERT_TRUE(waitForButton("2 warnings"));
    action("toggleFindingsAction").trigger();
    const auto *const table = outlet<QTableView>("findingsTable");
    auto *const showHidden = outlet<QToolButton>("findingsShowHiddenButton");
    const auto choose = [&](int index) {
        outlet<QToolButton>("findingsHideButton")->click();
        QMenu *const menu = outlet<QMenu>("findingsHidingMenu");
        menu->actions().at(index)->trigger();
        menu->close();
        QApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    EXPECT_TRUE(showHidden->isHidden());
    choose(1); // of this kind
    EXPECT_EQ(button(), "1 warning");
    EXPECT_EQ(table->model()->rowCount(), 1);
    choose(2); // of this device
    EXPECT_EQ(button(), "");
    EXPECT_FALSE(entry("Host")->worstFinding());
    EXPECT_FALSE(showHidden->isHidden());
    showHidden->click();
    ASSERT_EQ(table->model()->rowCount(), 2);
    choose(0); // show it again; the rule of the device hid the other one, too
    EXPECT_EQ(button(), "1 warning");
    choose(3); // everything
    EXPECT_EQ(button(), "2 warnings");
}
