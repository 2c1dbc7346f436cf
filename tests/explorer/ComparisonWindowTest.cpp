// SPDX-License-Identifier: Apache-2.0
// A window on a comparison of a live registry with what it was.
#include "ExplorerFixture.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "explorer/comparison/ComparisonDocument.h"
#include "explorer/comparison/ComparisonExport.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/widgets/OutlineRowDelegate.h"
#include "tests/support/EventLoop.h"
#include "tests/support/RegistryValues.h"

#include <QCheckBox>
#include <QFile>
#include <QLabel>
#include <gmock/gmock.h>

using namespace values;
using testing::HasSubstr;
using testing::Not;

namespace {
using DataSource = TavPropertiesOutlineViewDataSource;

class ComparisonWindow : public ExplorerFixture
{
protected:
    ComparisonWindow()
    {
        plantDisks();
        service_.setProperties(registry_["disk@0"],
                               dictionary({{"serial", text("S-1")},
                                           {"size", number(100)},
                                           {"statistics", dictionary({{"reads", number(1)}})}}));
        open();
        document_->markThisMoment();
    }

    // The document as it was marked, against what it is.
    void compare()
    {
        auto document = ComparisonDocument::create(
            documents_, {QStringLiteral("then"), document_->markedState()},
            {QStringLiteral("now"), document_->dataStore()});
        ASSERT_TRUE(document);
        comparison_ = static_cast<ComparisonDocument *>(&documents_.add(std::move(document)));
        shown_ = static_cast<TavWindowController *>(comparison_->windowControllers().front().get());
    }
    std::string tree() const { return rowsOf(shown_->views().tree()); }
    std::string summary() const
    {
        return outlet<QLabel>("comparisonSummary")->text().toStdString();
    }
    template<class Outlet>
    Outlet *outlet(const char *name) const
    {
        return InterfaceLoader::outlet<Outlet>(*shown_->window(), name);
    }
    void go(const char *path) { shown_->goToRegistryPath(QString::fromLatin1(path)); }
    // The property's old and new value, separated by a bar.
    std::string values(const char *key) const
    {
        const auto *const view = outlet<TavPropertiesOutlineView>("propertiesOutlineView");
        const QAbstractItemModel &rows = *view->model();
        for (int row = 0; row < rows.rowCount(); ++row) {
            const auto textIn = [&](int column) {
                return rows.index(row, column).data().toString();
            };
            if (textIn(DataSource::KeyColumn) == QLatin1String(key))
                return (textIn(DataSource::OldValueColumn) + u'|' + textIn(DataSource::ValueColumn))
                    .toStdString();
        }
        return "no row";
    }
    void changeDisk(quint64 size, quint64 reads)
    {
        service_.setProperties(
            registry_["disk@0"],
            dictionary({{"serial", text("S-1")},
                        {"size", number(size)},
                        {"statistics", dictionary({{"reads", number(reads)}})}}));
    }

    ComparisonDocument *comparison_ = nullptr;
    TavWindowController *shown_ = nullptr; // on it
};
} // namespace

TEST_F(ComparisonWindow, ShowsOnlyWhatDiffersAtFirst)
{
    changeDisk(200, 2);
    add("Host", "tape@0");
    update();
    compare();
    EXPECT_EQ(summary(), "1 added, 1 changed");
    EXPECT_THAT(tree(), HasSubstr("disk@0"));
    EXPECT_THAT(tree(), HasSubstr("tape@0"));
    EXPECT_THAT(tree(), Not(HasSubstr("disk@1")));
    outlet<QCheckBox>("onlyDifferencesBox")->click();
    EXPECT_THAT(tree(), HasSubstr("disk@1"));
    const QModelIndex root = shown_->views().tree().model()->index(0, 0);
    EXPECT_EQ(root.data(OutlineRowDelegate::DetailRole).toString(), QLatin1String("2 differences"));
    EXPECT_FALSE(outlet<QAction>("saveRedactedCopyAction")->isEnabled());
}

TEST_F(ComparisonWindow, ShowsOldAndNewValues)
{
    changeDisk(200, 2);
    update();
    compare();
    go("DxService:/bus/disk@0");
    ASSERT_TRUE(shown_->selectedEntry());
    EXPECT_EQ(values("size"), "0x64|0xc8");
    EXPECT_EQ(values("serial"), "|S-1");
    EXPECT_EQ(values("statistics"), "|1 value");
    outlet<QCheckBox>("volatileBox")->click();
    ASSERT_TRUE(waitFor([this] { return values("statistics") == "1 value|1 value"; }));
    comparison_->setIgnoredKeys({QStringLiteral("size"), QStringLiteral("statistics")});
    ASSERT_TRUE(waitFor([this] { return summary() == "No differences"; }));
    EXPECT_EQ(PreferencesStore::standard().list(PreferenceKeys::ignoredKeys).size(), 2);
}

TEST_F(ComparisonWindow, FollowsTheLiveRegistryAndKeepsTheSelection)
{
    compare();
    EXPECT_EQ(summary(), "No differences");
    add("Host", "tape@0");
    update();
    ASSERT_TRUE(waitFor([this] { return summary() == "1 added"; }));
    go("DxService:/tape@0");
    ASSERT_TRUE(shown_->selectedEntry());
    changeDisk(200, 1);
    shown_->update(); // of what is compared
    ASSERT_TRUE(waitFor([this] { return summary() == "1 added, 1 changed"; }));
    ASSERT_TRUE(shown_->selectedEntry());
    EXPECT_EQ(shown_->selectedEntry()->facts().name, QLatin1String("tape@0"));
}

TEST_F(ComparisonWindow, StepsThroughTheDifferencesAndBeepsAtTheEnd)
{
    changeDisk(200, 1);
    add("Host", "tape@0");
    update();
    compare();
    const auto selected = [this] { return shown_->selectedEntry()->facts().name.toStdString(); };
    outlet<QAction>("goToNextDifferenceAction")->trigger();
    EXPECT_EQ(selected(), "disk");
    outlet<QAction>("goToNextDifferenceAction")->trigger();
    EXPECT_EQ(selected(), "tape@0");
    const int before = beeps_;
    outlet<QAction>("goToNextDifferenceAction")->trigger();
    EXPECT_EQ(beeps_, before + 1);
    EXPECT_EQ(selected(), "tape@0");
    outlet<QAction>("goToPreviousDifferenceAction")->trigger();
    EXPECT_EQ(selected(), "disk");
}

TEST_F(ComparisonWindow, IsExportedWithoutSerialNumbersIfAsked)
{
    service_.setProperties(registry_["disk@0"],
                           dictionary({{"serial", text("S-2")}, {"size", number(200)}}));
    update();
    compare();
    ComparisonExport exporter(*shown_->window(), *comparison_);
    const auto written = [&](const char *name, bool isRedacted) {
        const QString path = preferencesFolder() + u'/' + QLatin1String(name);
        exporter.write(path, isRedacted);
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll().toStdString() : std::string();
    };
    EXPECT_THAT(written("plain.txt", false), HasSubstr("+ serial = S-2"));
    for (const char *const name : {"page.html", "list.txt", "data.json"}) {
        const std::string text = written(name, true);
        EXPECT_THAT(text, HasSubstr("serial")) << name;
        EXPECT_THAT(text, Not(HasSubstr("S-2"))) << name;
        EXPECT_THAT(text, Not(HasSubstr("S-1"))) << name;
    }
}
