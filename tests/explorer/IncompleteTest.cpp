// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "explorer/IncompleteBar.h"
#include "platform/widgets/ColumnBrowser.h"
#include "tests/support/RegistryValues.h"

#include <QListView>
#include <QMessageBox>
#include <QPushButton>

namespace {
const QString message =
    QStringLiteral("2 devices did not answer. Some of their attributes are missing.");

// A registry with devices that did not answer.
class IncompleteTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        open();
    }
    void setIncomplete(bool isIncomplete)
    {
        using namespace values;
        const RegistryValue missing = array({text("blocks")});
        service_.setProperties(
            registry_["Root"],
            isIncomplete
                ? dictionary({{"DxIncompleteObjects",
                               dictionary({{"devices/a", missing}, {"devices/b", missing}})}})
                : dictionary({}));
        service_.publishPlanes();
    }
    // The warning of the root by its row's mark, description and tool tip.
    static void expectMark(const QModelIndex &row, bool isMarked)
    {
        EXPECT_EQ(!row.data(Qt::DecorationRole).value<QIcon>().isNull(), isMarked);
        EXPECT_EQ(row.data(Qt::AccessibleDescriptionRole).toString(),
                  isMarked ? message : QString());
        EXPECT_EQ(row.data(Qt::ToolTipRole).toString().contains(message), isMarked);
    }
    void expectMarks(bool isMarked)
    {
        controller_->browserView();
        const QListView &column = *outlet<ColumnBrowser>("registryBrowser")->list(0);
        const QModelIndex top = column.model()->index(0, 0);
        expectMark(top, isMarked);
        EXPECT_LT(column.visualRect(top).height(), 2 * column.fontMetrics().height());
        controller_->outlineView();
        expectMark(row({"Root"}), isMarked);
        expectMark(row({"Root", "Host"}), false);
        const auto *const bar = window().findChild<IncompleteBar *>();
        EXPECT_EQ(bar->isVisible(), isMarked);
    }
    QPushButton *button(const char *name) const
    {
        return window().findChild<QPushButton *>(QLatin1String(name));
    }
};

TEST_F(IncompleteTest, IsMarkedAtTheRootUntilAllHaveAnswered)
{
    expectMarks(false);
    setIncomplete(true);
    update();
    expectMarks(true);
    window().grab();
    setIncomplete(false);
    button("tryAgainButton")->click();
    EXPECT_EQ(service_.retries(), 1);
    expectMarks(false);
}

TEST_F(IncompleteTest, IsListed)
{
    setIncomplete(true);
    update();
    button("showIncompleteButton")->click();
    auto *const list = window().findChild<QMessageBox *>();
    ASSERT_TRUE(list && list->isVisible());
    EXPECT_EQ(list->text(), message);
    EXPECT_EQ(list->informativeText(), QStringLiteral("devices/a\ndevices/b"));
    list->accept();

    openArchived();
    expectMarks(true);
    EXPECT_FALSE(button("tryAgainButton")->isVisible());
}
} // namespace
