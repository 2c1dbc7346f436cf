// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/PlaneMenu.h"

#include "explorer/Explanations.h"
#include "platform/widgets/VisibleText.h"

#include <QActionGroup>
#include <QComboBox>
#include <QMenu>
#include <QStandardItemModel>

PlaneMenu::PlaneMenu(QComboBox &popup, QMenu &menu)
    : popup_(popup)
    , menu_(menu)
    , planes_(new QActionGroup(this))
{
    popup.setItemData(0, Explanations::ofPlane(popup.itemText(0)), Qt::ToolTipRole);
    popup.setItemData(0, 0, TagRole);
    popup.setItemData(0, QStringLiteral("1"), KeyEquivalentRole);
    menu.setToolTipsVisible(true);
    connect(popup.model(), &QAbstractItemModel::rowsInserted, this, &PlaneMenu::rebuild);
    connect(popup.model(), &QAbstractItemModel::dataChanged, this, &PlaneMenu::rebuild);
    connect(&popup, &QComboBox::currentIndexChanged, this, &PlaneMenu::showCurrent);
    connect(planes_, &QActionGroup::triggered, this, [this](const QAction *action) {
        popup_.setCurrentIndex(action->data().toInt());
        Q_EMIT planeChosen();
    });
    connect(&popup, &QComboBox::activated, this, &PlaneMenu::planeChosen);
    rebuild();
}

void PlaneMenu::updatePlaneList(const QStringList &planes)
{
    QList<QStandardItem *> items; // added together, because each change rebuilds the menu
    for (const QString &plane : planes) {
        if (plane == QLatin1String("DxService"))
            continue;
        const int tag = static_cast<int>(items.size()) + 1;
        auto *const item = new QStandardItem(plane);
        item->setToolTip(Explanations::ofPlane(plane));
        item->setData(tag, TagRole);
        item->setData(QString::number(tag + 1), KeyEquivalentRole);
        items.append(item);
    }
    auto *const model = qobject_cast<QStandardItemModel *>(popup_.model());
    model->invisibleRootItem()->appendRows(items);
}

QString PlaneMenu::plane() const
{
    return popup_.currentText();
}

void PlaneMenu::showPlane(const QString &plane)
{
    if (popup_.findText(plane) < 0)
        popup_.addItem(plane);
    popup_.setCurrentIndex(popup_.findText(plane));
}

void PlaneMenu::rebuild()
{
    qDeleteAll(planes_->actions());
    for (int i = 0; i < popup_.count(); ++i) {
        // Plane names come from outside: an ampersand is not a mnemonic, a tab not a shortcut.
        QString title = visibleText(popup_.itemText(i));
        title.replace(u'&', QLatin1String("&&"));
        QAction *const action = menu_.addAction(title);
        const QString key = popup_.itemData(i, KeyEquivalentRole).toString();
        if (key.size() == 1)
            action->setShortcut(QKeySequence(QStringLiteral("Ctrl+") + key));
        action->setToolTip(popup_.itemData(i, Qt::ToolTipRole).toString());
        action->setData(i);
        action->setCheckable(true);
        planes_->addAction(action);
    }
    showCurrent();
}

void PlaneMenu::showCurrent()
{
    const QList<QAction *> actions = planes_->actions();
    for (int i = 0; i < actions.size(); ++i)
        actions[i]->setChecked(i == popup_.currentIndex());
}
