// SPDX-License-Identifier: Apache-2.0
#include "PropertiesFixture.h"

// A device with an attribute that is read on request and one that is never read.
class AttributeReadingTest : public PropertiesFixture
{
protected:
    void SetUp() override
    {
        PropertiesFixture::SetUp();
        setTable({{"DxUnreadAttributes", unread()}, {"name", values::text("a word")}});
        service_.offerReading(registry_["Host"], QStringLiteral("power/config"));
        update();
        view_->expand(row({0}));
    }

    static RegistryValue unread(const char *reason = "not read: wakes the device")
    {
        return values::dictionary({{"hot_add", values::text("not read: creates a device")},
                                   {"power/config", values::text(reason)}});
    }
    static RegistryValue withValue()
    {
        using namespace values;
        return dictionary(
            {{"DxUnreadAttributes", dictionary({{"hot_add", text("not read: creates a device")}})},
             {"name", text("a word")},
             {"power", dictionary({{"config", number(7)}})}});
    }
    // Clicks every few pixels, because the button may be anywhere, until something is requested.
    void clickAlong(const QModelIndex &index)
    {
        const QRect place = view_->visualRect(index);
        const std::size_t before = asked();
        for (int x = place.left() + 2; x < view_->viewport()->width() && asked() == before; x += 8)
            QTest::mouseClick(view_->viewport(), Qt::LeftButton, {}, {x, place.center().y()});
    }
    std::size_t asked() const { return service_.askedFor().size(); }
    QModelIndex config() const { return row({0, 1}, value); }
    QModelIndex hotAdd() const { return row({0, 0}, value); }
};

TEST_F(AttributeReadingTest, IsAskedForByTheButtonAlone)
{
    clickAlong(hotAdd());
    clickAlong(row({1}, value));
    EXPECT_EQ(asked(), 0U);
    const QRect cell = view_->visualRect(config());
    QTest::mouseClick(view_->viewport(), Qt::LeftButton, {},
                      {cell.left() + 6, cell.center().y()}); // its text
    EXPECT_EQ(asked(), 0U);
    clickAlong(config());
    ASSERT_EQ(asked(), 1U);
    EXPECT_EQ(service_.askedFor().front(),
              std::pair(registry_["Host"], QStringLiteral("power/config")));
    EXPECT_EQ(config().data().toString(), QStringLiteral("being read…"));
    clickAlong(config()); // once is enough
    EXPECT_EQ(asked(), 1U);
    EXPECT_EQ(editor(), nullptr);
    window().grab();
}

TEST_F(AttributeReadingTest, ShowsTheValueWhereItBelongs)
{
    view_->setFocus();
    selectRow({0, 1});
    QTest::keyClick(view_, Qt::Key_Space);
    ASSERT_EQ(asked(), 1U);
    service_.answerReading(withValue());
    EXPECT_EQ(rows(), dedented(R"(
        DxUnreadAttributes | Dictionary | 1 value
          hot_add | String | not read: creates a device
        name | String | a word
        power | Dictionary | 1 value
          config | Number | 0x7 *)"));
    EXPECT_TRUE(view_->hasFocus());

    // Again, by the menu command and with another row selected before the answer.
    QAction &command = action("readAttributeAction");
    Q_EMIT outlet<QMenu>("registryMenu")->aboutToShow();
    command.trigger();
    ASSERT_EQ(asked(), 2U);
    selectRow({1});
    service_.answerReading(withValue());
    EXPECT_EQ(view_->currentIndex(), row({1}));
    EXPECT_FALSE(command.isEnabled());
}

TEST_F(AttributeReadingTest, TellsWhyThereIsNoValue)
{
    choose(config(), "Read");
    selectRow({0, 1});
    ASSERT_EQ(asked(), 1U);
    service_.answerReading(values::dictionary({{"DxUnreadAttributes", unread("did not answer")}}));
    EXPECT_EQ(config().data().toString(), QStringLiteral("did not answer"));
    EXPECT_EQ(view_->currentIndex(), row({0, 1}));
    choose(config(), "Read");
    EXPECT_EQ(asked(), 2U);
}

TEST_F(AttributeReadingTest, EndsWithTheWindowOrTheEntry)
{
    choose(config(), "Read");
    select({"Root"});
    service_.answerReading(withValue());
    EXPECT_EQ(controller_->selectedEntry(), entry("Root"));
    select({"Root", "Host"});
    EXPECT_EQ(rows().find("not read: wakes"), std::string::npos);

    choose(row({2}), "Read Again"); // a folder is no attribute
    EXPECT_EQ(asked(), 1U);
    view_->expand(row({2}));
    choose(row({2, 0}), "Read Again");
    ASSERT_EQ(asked(), 2U);
    store_.reset();
    close();
    service_.answerReading(withValue());
    EXPECT_EQ(service_.openHandles(), 0U);
}

TEST_F(AttributeReadingTest, IsNotOfferedInASnapshot)
{
    openArchived();
    view_ = outlet<TavPropertiesOutlineView>("propertiesOutlineView");
    select({"Root", "Host"});
    view_->expand(row({0}));
    clickAlong(config());
    for (const QAction *item : menu(config())->actions())
        EXPECT_NE(item->text().remove(u'&'), QStringLiteral("Read"));
    EXPECT_EQ(config().data().toString(), QStringLiteral("not read: wakes the device"));
    EXPECT_EQ(asked(), 0U);
}
