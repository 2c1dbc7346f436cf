// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/RecentDocumentsMenu.h"

#include "platform/documents/RecentDocuments.h"
#include "platform/widgets/MenuText.h"

#include <QFileInfo>
#include <QMenu>

RecentDocumentsMenu::RecentDocumentsMenu(QMenu &menu, RecentDocuments &documents)
    : QObject(&menu)
    , menu_(menu)
    , documents_(documents)
{
    menu.setToolTipsVisible(true);
    // Deferred: the change may come from a choice in this menu.
    connect(&documents, &RecentDocuments::changed, this, &RecentDocumentsMenu::rebuild,
            Qt::QueuedConnection);
    rebuild();
}

void RecentDocumentsMenu::rebuild()
{
    menu_.clear();
    const QStringList files = documents_.files();
    for (const QString &file : files) {
        QAction *const action = menu_.addAction(menuText(QFileInfo(file).fileName()));
        action->setToolTip(file);
        connect(action, &QAction::triggered, this, [this, file] { Q_EMIT chosen(file); });
    }
    menu_.addSeparator();
    QAction *const clear = menu_.addAction(tr("&Clear List"));
    connect(clear, &QAction::triggered, &documents_, &RecentDocuments::clear);
    menu_.setEnabled(!files.isEmpty());
}
