// SPDX-License-Identifier: Apache-2.0
// Odd names from an archive or the host.
#include "ExplorerFixture.h"
#include "platform/widgets/FactField.h"
#include "tests/support/SmallStore.h"

#include <QComboBox>
#include <QFile>
#include <QLabel>
#include <QScrollBar>
#include <QStyledItemDelegate>

namespace {
class OddNamesTest : public ExplorerFixture
{
protected:
    void openSketch(const ArchiveSketch &sketch)
    {
        QFile file(preferencesFolder() + QStringLiteral("/made.vandrel"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(sketch.bytes());
        file.close();
        openFile(file.fileName());
    }
};
} // namespace

TEST_F(OddNamesTest, AnArchiveWithoutPlanesComesUp)
{
    ArchiveSketch sketch = SmallStore::current();
    sketch.objects[SmallStore::Store].set(QLatin1String("registryPlanes"),
                                          ArchiveValue(ArchiveList()));
    openSketch(sketch);
    EXPECT_EQ(outlet<QComboBox>("planeListButton")->count(), 1);
    EXPECT_EQ(rows(), "Root *\n  Child\n"); // the entries' own names
    controller_->browserView();
    window().grab();
    EXPECT_FALSE(outlet<QComboBox>("entryPathsButton")->isEnabled());
}

TEST_F(OddNamesTest, AbsurdOnesStayInTheirPlaces)
{
    const QString turning(QChar(0x202E));
    const QString end(480, u'x'); // no longer ones are read
    const QString name = turning + QStringLiteral("turned\n") + end;
    const QString shown = QStringLiteral("\uFFFDturned␊");
    ArchiveSketch sketch = SmallStore::current();
    const ArchiveDictionary names{{QStringLiteral("DxService"), name}};
    for (const auto position : {SmallStore::Root, SmallStore::Child})
        sketch.objects[position].set(QLatin1String("namesInPlanes"), ArchiveValue(names));
    sketch.objects[SmallStore::Store].set(QLatin1String("hostName"),
                                          ArchiveValue(name + QString(10'000, u'x')));
    openSketch(sketch);
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window()));
    EXPECT_EQ(tree().horizontalScrollBar()->value(), 0);
    controller_->selectChild();
    EXPECT_EQ(controller_->selectedEntry()->nameInPlane(QStringLiteral("DxService")), name);
    const QString title = window().windowTitle();
    EXPECT_TRUE(title.startsWith(QStringLiteral("made.vandrel — DxService — ") + shown));
    EXPECT_LT(title.size(), 600);
    EXPECT_TRUE(outlet<QLabel>("systemStatusField1")->text().startsWith(shown));

    auto *const field = outlet<FactField>("objectNameField");
    EXPECT_EQ(field->text(), shown + end);
    field->setFocus();
    field->setSelection(0, 4);
    QTest::keyClick(field, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(copied(), "\u202Etur");
    field->selectAll();
    controller_->copy();
    EXPECT_EQ(copied(), name.toStdString());
    window().grab();

    const QString toolTip = tree().currentIndex().data(Qt::ToolTipRole).toString();
    EXPECT_TRUE(toolTip.contains(QStringLiteral("Discovered: ")));
    EXPECT_FALSE(toolTip.contains(turning));
    QLabel wrapped(toolTip);
    wrapped.setWordWrap(true);
    EXPECT_LT(wrapped.sizeHint().width(), 1000);

    auto *const paths = outlet<QComboBox>("entryPathsButton");
    paths->addItem(name);
    paths->showPopup();
    EXPECT_LE(paths->view()->window()->width(), window().width());
    paths->hidePopup();
}

TEST_F(OddNamesTest, EachIsShownAsOneLine)
{
    plantDisks();
    open();
    const auto *const delegate = qobject_cast<QStyledItemDelegate *>(tree().itemDelegate());
    const auto shown = [&](const QVariant &name) {
        return delegate->displayText(name, QLocale()).toStdString();
    };
    const std::pair<const char *, std::string> names[] = {
        {"", ""},
        {"two\nlines\x01", "two␊lines␁"},
        {"\u202Ebackwards", "\uFFFDbackwards"},
        {"\u05E9\u05DC\u05D5\u05DD", "\u05E9\u05DC\u05D5\u05DD"},
    };
    for (const auto &[name, expected] : names) {
        service_.setName(registry_["module"], name);
        update();
        select({"Root", "Host", "module"});
        window().grab();
        EXPECT_EQ(shown(tree().currentIndex().data()), expected);
        EXPECT_EQ(outlet<QComboBox>("entryPathsButton")->currentText().toStdString(),
                  "DxService:/" + expected);
    }
    const std::string cut = shown(QString(10'000, u'y'));
    EXPECT_EQ(cut, std::string(cut.find("…"), 'y') + "…");
    EXPECT_LE(cut.size(), 503U);
    EXPECT_EQ(beeps_, 0);
}
