// SPDX-License-Identifier: Apache-2.0
#include "explorer/export/ExportCommands.h"
#include "PropertiesFixture.h"
#include "platform/desktop/PagePrinter.h"
#include "platform/host/DesktopServices.h"
#include "store/DataStoreDecoder.h"
#include "tests/support/EncodedStore.h"

#include <QAbstractButton>
#include <QFile>
#include <QListWidget>
#include <QPrinter>

namespace {
class ExportCommandsTest : public PropertiesFixture
{
protected:
    QString fileNamed(const char *name) const
    {
        return preferencesFolder() + u'/' + QLatin1String(name);
    }
    static QByteArray contents(const QString &file)
    {
        QFile opened(file);
        return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
    }
    QAbstractButton &button(const char *name) const { return *outlet<QAbstractButton>(name); }
};
} // namespace

TEST_F(ExportCommandsTest, TheKeyCopiesTheSelectedPropertiesFromTheTop)
{
    choose({}, "Expand All");
    view_->setFocus();
    const auto select = [&](const QModelIndex &index) {
        view_->selectionModel()->setCurrentIndex(index, QItemSelectionModel::Select |
                                                            QItemSelectionModel::Rows);
    };
    view_->clearSelection();
    for (const QModelIndex &index : {row({2}), row({1}), row({0, 1, 0, 0}), row({0, 0})})
        select(index);
    EXPECT_EQ(view_->selectedItem()->value(), values::text("one")); // the current one
    action("copyAction").trigger();
    EXPECT_EQ(copied(), "list[0] = one\n"
                        "list[1]/deep[0] = end\n"
                        "name = a word\n"
                        "size = 0x5");
    view_->clearSelection();
    action("copyAction").trigger();
    EXPECT_EQ(copied(), "DxService:/");
    select(row({2}));
    tree().setFocus();
    action("copyAction").trigger();
    EXPECT_EQ(copied(), "DxService:/");
}

TEST_F(ExportCommandsTest, CopiesTheEntryAsTextAndAsJson)
{
    action("copyEntryAsTextAction").trigger();
    EXPECT_NE(copied().find("+ Host\n  Path: DxService:/\n"), std::string::npos) << copied();
    EXPECT_NE(copied().find("    size = 0x5\n"), std::string::npos);
    EXPECT_EQ(copied().find("Machine"), std::string::npos);
    action("copyEntryAsJsonAction").trigger();
    EXPECT_NE(copied().find("\"size\":{\"$number\":5,\"bytes\":4}"), std::string::npos);
    selectNothing();
    EXPECT_FALSE(action("copyEntryAsJsonAction").isEnabled());
}

TEST_F(ExportCommandsTest, TheSheetOffersWhatThereIs)
{
    action("exportAction").trigger();
    EXPECT_TRUE(button("exportSubtreeButton").isChecked());
    EXPECT_FALSE(button("exportFoundButton").isEnabled());
    auto &columns = *outlet<QListWidget>("exportColumnsList");
    EXPECT_FALSE(columns.isVisible());
    button("exportCsvButton").click();
    EXPECT_TRUE(columns.isVisible());
    ASSERT_EQ(columns.findItems(QStringLiteral("size"), Qt::MatchExactly).size(), 1);
    columns.findItems(QStringLiteral("size"), Qt::MatchExactly).first()->setCheckState(Qt::Checked);
    button("exportPlaneButton").click(); // collects the keys again
    EXPECT_EQ(columns.findItems(QStringLiteral("size"), Qt::MatchExactly).first()->checkState(),
              Qt::Checked);
    button("exportCancelButton").click();

    selectNothing();
    click("findNameCheckbox");
    find("Host");
    selectNothing();
    action("printAction").trigger();
    EXPECT_TRUE(button("exportFoundButton").isEnabled());
    EXPECT_FALSE(button("exportEntryButton").isEnabled());
    EXPECT_FALSE(button("exportCsvButton").isVisible());
    EXPECT_FALSE(columns.isVisible());
    button("exportCancelButton").click();
}

TEST_F(ExportCommandsTest, WritesTheFileOrLeavesItAsItWas)
{
    using enum ExportRequest::Scope;
    using enum ExportRequest::Format;
    ExportCommands &exporter = controller_->exporter();
    const QString file = fileNamed("export.csv");
    exporter.write({Entry, Csv, {{EntryFactTexts::Fact::Name}, {QStringLiteral("size")}}}, file);
    EXPECT_EQ(contents(file), "Name,size\r\nHost,0x5\r\n");
    exporter.write({Plane, Json}, file);
    EXPECT_TRUE(contents(file).startsWith("{\"format\":\"vandrel-export\""));

    int alerts = 0;
    const DesktopServices services = DesktopServices::instance();
    DesktopServices::instance().presentAlert = [&](const Alert &, const auto &) { ++alerts; };
    exporter.write({Plane, Text}, fileNamed("missing/export.txt"));
    EXPECT_EQ(alerts, 1);
    // Cancelled in the middle.
    class Cancelling : public WorkDisplay
    {
        void run(const Work &work) override
        {
            WorkProgress progress;
            progress.cancel();
            work(progress);
        }
    };
    DesktopServices::instance().makeWorkDisplay = [](const auto &, auto) {
        return std::make_unique<Cancelling>();
    };
    const QByteArray before = contents(file);
    exporter.write({Plane, Text, {}, true}, file);
    exporter.writeRedactedCopy(fileNamed("copy.vandrel"));
    DesktopServices::instance() = services;
    EXPECT_EQ(contents(file), before);
    EXPECT_FALSE(QFile::exists(fileNamed("copy.vandrel")));
    EXPECT_EQ(alerts, 1);
}

TEST_F(ExportCommandsTest, ACopyWithoutSerialNumbersLeavesTheDocumentAsItIs)
{
    using namespace values;
    setTable({{"serial", text("SN-77812")}, {"link", text("by-id/SN-77812")}});
    update();
    openArchived();
    const QByteArray before = encoded(*store_);
    const QString ownFile = document_->fileName();
    const QString file = fileNamed("copy.vandrel");
    controller_->exporter().writeRedactedCopy(file);
    EXPECT_EQ(document_->fileName(), ownFile);
    EXPECT_FALSE(document_->isDocumentEdited());
    EXPECT_TRUE(encoded(*store_) == before);
    EXPECT_FALSE(contents(file).contains("SN-77812"));
    const auto copy = DataStoreDecoder::decode(contents(file));
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy->registryEntries().size(), store_->registryEntries().size());
}

TEST_F(ExportCommandsTest, PrintsLinesOfAnyLengthOnNumberedPages)
{
    const QString file = fileNamed("pages.pdf");
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFileName(file);
    {
        PagePrinter pages(printer, QStringLiteral("machine"));
        ASSERT_TRUE(pages.open(QIODevice::WriteOnly));
        for (int line = 0; line < 200; ++line)
            pages.write("a line\nthe next, without");
        pages.write(QByteArray(5000, 'w') + "\n\xf0\x9f\x98\x80");
    }
    const QByteArray pdf = contents(file);
    EXPECT_TRUE(pdf.startsWith("%PDF"));
    EXPECT_GE(pdf.count("/Type /Page\n"), 3) << "more lines than on two pages";
}
