#include "explorer/TavRegistryBrowserCell.h"

#include "platform/desktop/ColumnBrowser.h"

ColumnBrowser *TavRegistryBrowserCell::browser() const
{
    QWidget *view = controlView();
    while (view && !qobject_cast<ColumnBrowser *>(view))
        view = view->parentWidget();
    return static_cast<ColumnBrowser *>(view);
}
