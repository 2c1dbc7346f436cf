// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/WindowsMenu.h"

#include "platform/desktop/WindowTitle.h"
#include "platform/documents/DocumentController.h"
#include "platform/widgets/MenuText.h"

#include <QMenu>
#include <QWidget>

WindowsMenu::WindowsMenu(QMenu &menu, const QWidget &window, DocumentController &documents)
    : QObject(&menu)
    , menu_(menu)
    , window_(window)
    , documents_(documents)
{
    connect(&menu, &QMenu::aboutToShow, this, &WindowsMenu::rebuild);
}

void WindowsMenu::rebuild()
{
    qDeleteAll(windows_);
    windows_ = {menu_.addSeparator()};
    for (const auto &document : documents_.documents()) {
        for (const auto &controller : document->windowControllers()) {
            QWidget *const window = controller->documentWindow();
            QAction *const action = menu_.addAction(menuText(WindowTitle::shown(*window)));
            action->setCheckable(true);
            action->setChecked(window == &window_);
            connect(action, &QAction::triggered, window,
                    [&shown = *controller] { shown.showWindow(); });
            windows_.append(action);
        }
    }
}
