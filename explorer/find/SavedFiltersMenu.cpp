// SPDX-License-Identifier: Apache-2.0
#include "explorer/find/SavedFiltersMenu.h"

#include "explorer/find/StoredFilters.h"
#include "platform/widgets/MenuText.h"
#include "platform/widgets/VisibleText.h"

#include <QMenu>

SavedFiltersMenu::SavedFiltersMenu(QMenu &menu)
    : QObject(&menu)
    , menu_(menu)
{
    connect(&menu, &QMenu::aboutToShow, this, &SavedFiltersMenu::rebuild);
    rebuild();
}

void SavedFiltersMenu::rebuild()
{
    qDeleteAll(items_);
    items_.clear();
    delete std::exchange(removeMenu_, nullptr);
    const auto filters = StoredFilters::saved();
    if (filters.empty())
        return;
    removeMenu_ = menu_.addMenu(tr("&Remove Filter"));
    items_.append(menu_.addSeparator());
    for (const auto &[name, expression] : filters) {
        const QString text = menuText(visibleText(name));
        QAction *const item = menu_.addAction(text);
        item->setToolTip(expression);
        items_.append(item);
        connect(item, &QAction::triggered, this,
                [this, filter = expression] { Q_EMIT filterChosen(filter); });
        connect(removeMenu_->addAction(text), &QAction::triggered, this,
                [filter = name] { StoredFilters::remove(filter); });
    }
}
