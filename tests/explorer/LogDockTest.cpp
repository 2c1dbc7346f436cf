// SPDX-License-Identifier: Apache-2.0
#include "ExplorerFixture.h"
#include "activity/DocumentActivity.h"
#include "explorer/log/EventLogDock.h"
#include "explorer/log/EventLogModel.h"
#include "explorer/window/WindowDocks.h"
#include "model/RegistryEventFeed.h"
#include "platform/widgets/SearchField.h"

#include <QBuffer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QTableView>
#include <QToolButton>

using Kind = RegistryEvent::Kind;

// A window on two disks with its log of events.
class LogDockTest : public ExplorerFixture
{
protected:
    void SetUp() override
    {
        plantDisks();
        for (const char *disk : {"disk@0", "disk@1"})
            service_.setKernelPath(registry_[disk], pathOf(disk));
        open();
        action("toggleLogAction").trigger();
        table_ = outlet<QTableView>("logTable");
        testModelOf(*table_);
    }

    static QString pathOf(const char *name)
    {
        return QStringLiteral("/sys/devices/") + QLatin1String(name);
    }
    void send(Kind kind, const char *name = "disk@0")
    {
        Q_EMIT service_.eventFeed()->happened({.kind = kind,
                                               .time = QDateTime::currentMSecsSinceEpoch(),
                                               .sequence = ++sequence_,
                                               .kernelPath = pathOf(name)});
    }
    EventLog &log() { return DocumentActivity::of(*document_).log(); }
    void catchUp() { model().catchUp(); }
    EventLogModel &model() { return *static_cast<EventLogModel *>(table_->model()); }
    // "appeared disk@0", one after the other
    std::string events()
    {
        catchUp();
        QStringList texts;
        for (int row = 0; row < model().rowCount(); ++row)
            texts << model().index(row, EventLogModel::EventColumn).data().toString() + u' ' +
                         model().index(row, EventLogModel::EntryColumn).data().toString();
        return texts.join(QStringLiteral(", ")).toStdString();
    }
    std::string counts() const { return outlet<QLabel>("logCounts")->text().toStdString(); }
    void filter(const char *text)
    {
        auto *const field = outlet<SearchField>("logFilterField");
        field->setText(QString::fromLatin1(text));
        QTest::keyClick(field, Qt::Key_Return);
    }

    QTableView *table_ = nullptr;
    quint64 sequence_ = 0;
};

TEST_F(LogDockTest, FiltersWhatIsThereAndWhatIsGone)
{
    send(Kind::Bound);
    send(Kind::Changed, "disk@1");
    send(Kind::Gone);
    send(Kind::Appeared, "other");
    EXPECT_EQ(events(), "bound disk@0, changed disk@1, gone disk@0, appeared other");
    filter("class ~ DxDisk");
    EXPECT_EQ(events(), "bound disk@0, gone disk@0");
    EXPECT_EQ(counts(), "2 events · 2 filtered out");
    filter("name = other");
    EXPECT_EQ(events(), "appeared other");
    filter("name =");
    EXPECT_EQ(events(), "appeared other"); // the last that was right
    filter("");
    EXPECT_EQ(model().rowCount(), 4);
}

TEST_F(LogDockTest, BurstIsKeptUpToTheLimitAndTheRestIsCounted)
{
    constexpr int burst = 10'000;
    for (int i = 0; i < burst; ++i)
        send(Kind::Changed);
    catchUp();
    EXPECT_EQ(model().rowCount(), burst);
    table_->scrollTo(model().index(burst / 2, 0));
    while (log().dropped() < 500)
        send(Kind::Changed, "disk@1");
    catchUp();
    EXPECT_LE(log().bytes(), EventLog::maxBytes);
    EXPECT_EQ(static_cast<quint64>(model().rowCount()) + log().dropped(), sequence_);
    EXPECT_NE(counts().find(std::to_string(log().dropped()) + " oldest dropped"),
              std::string::npos);
    EXPECT_EQ(model().logRow(0).event.sequence, log().dropped() + 1);

    click("logClearButton");
    EXPECT_EQ(model().rowCount(), 0);
    EXPECT_EQ(log().bytes(), 0U);
    EXPECT_EQ(counts(), "0 events");
}

TEST_F(LogDockTest, PauseHoldsWhatComes)
{
    send(Kind::Bound);
    catchUp();
    click("logPauseButton");
    send(Kind::Unbound);
    EXPECT_EQ(events(), "bound disk@0");
    EXPECT_EQ(counts(), "1 event · 1 waiting");
    action("toggleLogAction").trigger(); // hidden and shown again, it is up to date
    action("toggleLogAction").trigger();
    EXPECT_EQ(events(), "bound disk@0, unbound disk@0");
    click("logPauseButton");
    action("togglePauseAction").trigger(); // the whole window
    send(Kind::Bound);
    EXPECT_EQ(model().rowCount(), 2);
    action("togglePauseAction").trigger();
    EXPECT_EQ(model().rowCount(), 3);
}

TEST_F(LogDockTest, RowLeadsToItsEntryEvenIfItHasGone)
{
    send(Kind::Changed, "disk@1");
    catchUp();
    table_->selectRow(0);
    QTest::keyClick(table_, Qt::Key_Return);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    selectNothing();
    terminate("disk@1");
    QTest::keyClick(table_, Qt::Key_Return);
    EXPECT_EQ(selected(), "DxService:/bus/disk@1");
    QTest::keyClick(table_, Qt::Key_C, Qt::ControlModifier);
    EXPECT_NE(copied().find("changed"), std::string::npos);
    EXPECT_NE(copied().find("DxService:/bus/disk@1"), std::string::npos);
}

TEST_F(LogDockTest, IsWrittenInThreeForms)
{
    Q_EMIT service_.eventFeed()->happened(
        {.kind = Kind::Renamed,
         .time = 1'000,
         .sequence = 7,
         .kernelPath = pathOf("disk@0"),
         .oldKernelPath = pathOf("disk, \"old\""),
         .changes = {{QStringLiteral("mtu"), QStringLiteral("1"), QStringLiteral("2")}}});
    const quint64 numbers[] = {0, 99};
    const auto written = [&](LogExport::Format format) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        EXPECT_TRUE(LogExport::write(log(), std::span(numbers, 1), format, buffer));
        return buffer.data();
    };
    EXPECT_TRUE(written(LogExport::Format::Text).contains("\n    mtu: 1 → 2\n"));
    const QByteArray csv = written(LogExport::Format::Csv);
    EXPECT_TRUE(csv.contains("\r\n1970-01-01T00:00:01.000Z,renamed,")) << csv.constData();
    EXPECT_TRUE(csv.contains("\"was disk, \"\"old\"\", mtu: 1 → 2\",7,")) << csv.constData();
    const QJsonObject json = QJsonDocument::fromJson(written(LogExport::Format::Ndjson)).object();
    EXPECT_EQ(json[QStringLiteral("event")].toString(), QStringLiteral("renamed"));
    EXPECT_EQ(json[QStringLiteral("sequence")].toInt(), 7);
    EXPECT_EQ(json[QStringLiteral("changes")][0][QStringLiteral("new")].toString(),
              QStringLiteral("2"));
}
