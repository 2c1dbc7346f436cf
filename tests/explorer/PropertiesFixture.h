// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "ExplorerFixture.h"
#include "display/TavPropertyOutlineItem.h"
#include "display/views/PropertiesContextMenu.h"
#include "display/views/TavPropertiesOutlineView.h"
#include "display/views/TavPropertiesOutlineViewDataSource.h"
#include "tests/support/RegistryValues.h"

#include <QApplication>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QPlainTextEdit>

// A window that shows the properties of the host: a list with a table in it, a text and a number.
class PropertiesFixture : public ExplorerFixture
{
protected:
    using Table = std::initializer_list<std::pair<const char *, RegistryValue>>;

    void SetUp() override
    {
        using namespace values;
        registry_.plane("DxService", "Root\n  Host");
        setTable({{"list", array({text("one"), dictionary({{"deep", array({text("end")})}})})},
                  {"name", text("a word")},
                  {"size", number(5)}});
        open();
        view_ = outlet<TavPropertiesOutlineView>("propertiesOutlineView");
        testModelOf(*view_);
        select({"Root", "Host"});
    }

    void setTable(Table table)
    {
        service_.setProperties(registry_["Host"], values::dictionary(table));
    }
    void goAwayAndBack()
    {
        select({"Root"});
        select({"Root", "Host"});
    }
    std::string rows() const { return rowsOf(*view_); }
    QModelIndex row(std::initializer_list<int> numbers, int column = 0) const
    {
        QModelIndex index;
        for (const int number : numbers)
            index = view_->model()->index(number, 0, index);
        return index.siblingAtColumn(column);
    }
    void clickArrow(std::initializer_list<int> numbers, Qt::KeyboardModifiers modifiers = {})
    {
        clickExpander(*view_, row(numbers), modifiers);
    }
    void selectRow(std::initializer_list<int> numbers, int column = 0)
    {
        view_->setCurrentIndex(row(numbers, column));
    }
    int height(const QModelIndex &index) const { return view_->visualRect(index).height(); }
    void clickHeader(int column)
    {
        const QHeaderView *const header = view_->header();
        QTest::mouseClick(header->viewport(), Qt::LeftButton, {},
                          {header->sectionViewportPosition(column) + 20, header->height() / 2});
    }
    // The keys of the rows at the top, in their order.
    std::string keys() const
    {
        QStringList keys;
        for (int i = 0; i < view_->model()->rowCount(); ++i)
            keys << row({i}).data().toString();
        return keys.join(u' ').toStdString();
    }
    // The commands of the context menu for the row, or for none.
    PropertiesContextMenu *menu(const QModelIndex &index)
    {
        const QPoint place = index.isValid() ? view_->visualRect(index).center()
                                             : view_->viewport()->rect().bottomRight();
        QContextMenuEvent event(QContextMenuEvent::Mouse, place,
                                view_->viewport()->mapToGlobal(place));
        QApplication::sendEvent(view_->viewport(), &event);
        return view_->findChildren<PropertiesContextMenu *>().last();
    }
    void choose(const QModelIndex &index, const char *command)
    {
        PropertiesContextMenu *const commands = menu(index);
        for (QAction *action : commands->findChildren<QAction *>()) {
            if (action->text().remove(u'&') == QLatin1String(command))
                action->trigger();
        }
        commands->close();
    }
    QPlainTextEdit *editor() const { return view_->viewport()->findChild<QPlainTextEdit *>(); }

    TavPropertiesOutlineView *view_ = nullptr;
    static constexpr int value = TavPropertiesOutlineViewDataSource::ValueColumn;
    static constexpr int type = TavPropertiesOutlineViewDataSource::TypeColumn;
};
