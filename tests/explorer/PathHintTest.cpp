// SPDX-License-Identifier: Apache-2.0
// Messages for a path that leads nowhere, while typing and after going to it.
#include "ExplorerFixture.h"
#include "explorer/selection/RegistryPathReader.h"
#include "platform/widgets/FactField.h"
#include "tests/support/LogCapture.h"

#include <QLineEdit>
#include <QStatusBar>

namespace {
class PathHintTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        open();
    }
    QLineEdit &field() const { return *outlet<QLineEdit>("goToPathField"); }
    std::string hint() const
    {
        return outlet<FactField>("goToPathMessageField")->text().toStdString();
    }
    // The field as it is painted, without the cursor.
    QImage picture() const
    {
        field().clearFocus();
        return field().grab().toImage();
    }
    std::string message() const { return window().statusBar()->currentMessage().toStdString(); }
};
} // namespace

TEST_F(PathHintTest, NamesTheFirstWrongPart)
{
    struct Row
    {
        const char *path;
        const char *marked; // "": nothing
        const char *message = "";
    };
    const Row rows[] = {
        {"", ""},
        {"Dx", ""},
        {"dxpower", ""}, // the offers correct it
        {"DxPower:", ""},
        {"DxPower:/", ""},
        {"DxService:/bus/DISK", ""},
        {"DxService:/bus/disk@0/", ""},
        {"DxService:/bus/disk@1", ""},
        {"DxNone", "DxNone", "There is no plane “DxNone”"},
        {"dxpower:/", "dxpower", "There is no plane “dxpower”"},
        {"/bus", "/bus", "There is nothing at /bus"},
        {"DxPower/supply", "/supply", "“:/” follows the plane in a path"},
        {"DxPower:supply", ":supply", "“:/” follows the plane in a path"},
        {"DxPower:/bus", "bus", "There is no “bus” below DxPower:/"},
        {"DxService:/bus/foo/part@1", "foo", "There is no “foo” below DxService:/bus"},
        {"DxService:/bus/disk@0/foo", "foo", "There is no “foo” below DxService:/bus/disk@0"},
        {"DxService:/bus/disk/", "disk", "There is no “disk” below DxService:/bus"},
        {"DxService://bus", "/", "There is no “/” below DxService:/"},
        {"DxService:/module/", "/", "There is nothing below DxService:/module"},
        {"DxPower:/a\nb", "a\nb", "There is no “a␊b” below DxPower:/"},
    };
    RegistryPathReader reader(store_);
    const LogCapture log;
    for (const Row &row : rows) {
        const QString path = QString::fromUtf8(row.path);
        const auto problem = reader.problem(path);
        const QString marked = problem ? path.mid(problem->start, problem->length) : QString();
        EXPECT_EQ(marked.toStdString(), row.marked) << row.path;
        EXPECT_EQ(problem ? problem->message.toStdString() : "", row.message) << row.path;
    }
    EXPECT_EQ(log.messages(), QStringList());
}

TEST_F(PathHintTest, MarksAndSaysItWhileTheUserTypes)
{
    controller_->promptForPath();
    LogCapture log;
    field().setText(QStringLiteral("DxService:/bus/disk@9"));
    const QImage marked = picture();
    EXPECT_EQ(hint(), "There is no “disk@9” below DxService:/bus");
    EXPECT_EQ(field().accessibleDescription().toStdString(), hint());
    add("bus", "disk@9");
    update();
    controller_->cancelGoToPath();
    controller_->promptForPath(); // reads what is there now
    EXPECT_EQ(hint(), "");
    EXPECT_NE(picture(), marked);
    field().clear();
    QTest::keyClicks(&field(), QStringLiteral("no plane/at all"));
    EXPECT_EQ(hint(), "There is no plane “no plane”");
    EXPECT_EQ(log.take(), QStringList());
    EXPECT_EQ(beeps_, 0);
}

TEST_F(PathHintTest, TheBarNamesAPathThatLeadsNowhere)
{
    const std::pair<const char *, const char *> rows[] = {
        {"DxService:/bus/foo/x", "There is no “foo” below DxService:/bus"},
        {"DxService:/bus/dis", "There is no “dis” below DxService:/bus"},
        {"DxService:/bus/", "There is no “/” below DxService:/bus"},
        {"DxPower", "“:/” follows the plane in a path"},
        {"DxPower:", "“DxPower:” leads nowhere"},
    };
    for (const auto &[path, expected] : rows) {
        controller_->goToRegistryPath(QString::fromUtf8(path));
        EXPECT_EQ(message(), expected) << path;
    }
    EXPECT_EQ(beeps_, 5);
    EXPECT_FALSE(outlet<QWidget>("systemStatusField1")->isVisible()); // it makes room for a while
    controller_->goToRegistryPath(QStringLiteral("DxService:/bus"));
    EXPECT_EQ(message(), "");
    EXPECT_TRUE(outlet<QWidget>("systemStatusField1")->isVisible());
}
