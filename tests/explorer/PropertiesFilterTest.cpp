// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"
#include "platform/widgets/SearchField.h"
#include "platform/widgets/ViewNote.h"

#include <QScrollBar>

namespace {
class PropertiesFilterTest : public PropertiesFixture
{
protected:
    void SetUp() override
    {
        PropertiesFixture::SetUp();
        field_ = outlet<SearchField>("propertiesFilterField");
        for (const ViewNote *note : window().findChildren<ViewNote *>()) {
            if (note->geometry() == view_->geometry())
                note_ = note;
        }
        all_ = rows();
    }
    std::string filtered(const char *text)
    {
        field_->setText(QString::fromUtf8(text));
        Q_EMIT field_->searchRequested();
        return rows();
    }

    SearchField *field_ = nullptr;
    const ViewNote *note_ = nullptr;
    std::string all_;
};
} // namespace

TEST_F(PropertiesFilterTest, ShowsWhatHasTheTextAndTheWayToIt)
{
    EXPECT_EQ(filtered("WORD"), "name | String | a word\n");
    EXPECT_EQ(filtered("0x5"), "size | Number | 0x5\n");
    EXPECT_EQ(filtered("end"), "list | Array | 2 values\n  0 | Dictionary | 1 value\n"
                               "    deep | Array | 1 value\n      0 | String | end\n");
    EXPECT_EQ(filtered("deep"), "list | Array | 2 values\n  0 | Dictionary | 1 value\n"
                                "    deep | Array | 1 value +\n"); // with all below
    EXPECT_EQ(filtered("list"), "list | Array | 2 values +\n");
    clickArrow({0});
    EXPECT_EQ(rows(),
              "list | Array | 2 values\n  0 | String | one\n  0 | Dictionary | 1 value +\n");
    clickArrow({0});
    EXPECT_EQ(filtered("values"), ""); // counts are no values
    EXPECT_TRUE(note_->isVisible());
    EXPECT_EQ(filtered(""), all_);
    EXPECT_FALSE(note_->isVisible());
}

TEST_F(PropertiesFilterTest, LeavesThePlaceOfTheUserAlone)
{
    RegistryValue::Members members;
    for (int i = 0; i < 200; ++i)
        members.push_back({CompactString(QStringLiteral("key%1").arg(i)), values::number(5)});
    members.push_back({CompactString(QStringLiteral("table")),
                       values::dictionary({{"inner", values::array({values::text("end")})}})});
    service_.setProperties(registry_["Host"], RegistryValue::dictionary(std::move(members)));
    update();
    view_->grab();
    selectRow({20});
    view_->verticalScrollBar()->setValue(100);
    const std::string before = rows();
    EXPECT_EQ(filtered("key7").substr(0, 4), "key7");
    EXPECT_EQ(filtered("end").substr(0, 5), "table");
    EXPECT_EQ(view_->verticalScrollBar()->value(), 0);
    EXPECT_EQ(filtered(""), before);
    EXPECT_EQ(view_->verticalScrollBar()->value(), 100);

    filtered("end");
    selectRow({200, 0, 0}); // and now to see it among the others
    filtered("");
    EXPECT_TRUE(view_->isExpanded(row({200, 0})));
    EXPECT_TRUE(view_->viewport()->rect().intersects(view_->visualRect(row({200, 0, 0}))));
}

TEST_F(PropertiesFilterTest, FollowsTheEntryAndItsUpdates)
{
    EXPECT_EQ(filtered("end"), "list | Array | 2 values\n  0 | Dictionary | 1 value\n"
                               "    deep | Array | 1 value\n      0 | String | end\n");
    clickHeader(0);
    setTable({{"list", values::array({values::text("one")})},
              {"name", values::text("the end")},
              {"size", values::number(5)},
              {"tail", values::text("end")}});
    update();
    EXPECT_EQ(rows(), "name | String | the end\ntail | String | end\n");
    goAwayAndBack();
    EXPECT_EQ(rows(), "name | String | the end\ntail | String | end\n");
    select({"Root"});
    EXPECT_EQ(rows().find("name"), std::string::npos);
    EXPECT_EQ(field_->text(), QStringLiteral("end"));
    select({"Root", "Host"});

    // Another way to show a number.
    EXPECT_EQ(filtered("0b1"), "");
    auto *const size = dynamic_cast<TavPropertyOutlineItem *>(view_->dataSource()->item(row({2})));
    ASSERT_TRUE(size);
    size->setPropertyFormats({.unit = 4, .base = 2}, size->registryEntry()->DxcoreClass());
    controller_->dataViewOptionsChanged(size);
    EXPECT_EQ(rows(), "size | Number | 0b101\n");
}

TEST_F(PropertiesFilterTest, HasKeys)
{
    action("filterPropertiesAction").trigger();
    EXPECT_TRUE(field_->hasFocus());
    QTest::keyClicks(field_, QStringLiteral("word"));
    QTest::keyClick(field_, Qt::Key_Return);
    EXPECT_EQ(rows(), "name | String | a word\n");
    QTest::keyClick(field_, Qt::Key_Escape);
    EXPECT_EQ(rows(), all_);
    EXPECT_TRUE(view_->hasFocus());
    EXPECT_EQ(beeps_, 0);
}
