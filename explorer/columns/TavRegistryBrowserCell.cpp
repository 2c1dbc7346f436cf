// SPDX-License-Identifier: Apache-2.0
#include "explorer/columns/TavRegistryBrowserCell.h"

#include "platform/widgets/ColumnBrowser.h"

ColumnBrowser *TavRegistryBrowserCell::browser() const
{
    QWidget *view = controlView();
    while (view && !qobject_cast<ColumnBrowser *>(view))
        view = view->parentWidget();
    return static_cast<ColumnBrowser *>(view);
}
