#include "explorer/selection/PlaneMenu.h"

#include "platform/widgets/VisibleText.h"

#include <QActionGroup>
#include <QComboBox>
#include <QMenu>

PlaneMenu::PlaneMenu(QComboBox &popup, QMenu &menu)
    : popup_(popup)
    , menu_(menu)
    , planes_(new QActionGroup(this))
{
    menu.setToolTipsVisible(true);
    connect(popup.model(), &QAbstractItemModel::rowsInserted, this, &PlaneMenu::rebuild);
    connect(popup.model(), &QAbstractItemModel::dataChanged, this, &PlaneMenu::rebuild);
    connect(&popup, &QComboBox::currentIndexChanged, this, &PlaneMenu::showCurrent);
    connect(planes_, &QActionGroup::triggered, this, [this](const QAction *action) {
        popup_.setCurrentIndex(action->data().toInt());
        Q_EMIT planeChosen();
    });
    rebuild();
}

void PlaneMenu::rebuild()
{
    qDeleteAll(planes_->actions());
    for (int i = 0; i < popup_.count(); ++i) {
        // Names of planes are not ours: an ampersand in one marks no mnemonic, a tab no key.
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
