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
