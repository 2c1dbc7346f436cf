// SPDX-License-Identifier: Apache-2.0
#include "explorer/window/EntryCommands.h"

#include "explorer/selection/EntrySelection.h"
#include "explorer/window/PropertiesPane.h"
#include "platform/desktop/InterfaceLoader.h"
#include "platform/host/FileManager.h"
#include "platform/widgets/ContextMenuKey.h"
#include "platform/widgets/FactField.h"

#include <QAction>
#include <QClipboard>
#include <QGuiApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMimeData>
#include <QPlainTextEdit>

EntryCommands::EntryCommands(QMainWindow &window, EntrySelection &selection,
                             PropertiesPane &properties)
    : window_(window)
    , selection_(selection)
    , properties_(properties)
{
    ContextMenuKey::addTo(window);
}

void EntryCommands::showEntryMenu(const QPoint &globalPosition)
{
    static constexpr const char *separator = nullptr;
    auto *const menu = new QMenu(&window_);
    menu->setObjectName(QStringLiteral("entryMenu"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    for (const char *const item :
         {"copyNameAction", "copyPathAction", "copyClassAction", "copyBundleAction",
          "copyKernelPathAction", "copyEntryAsTextAction", "copyEntryAsJsonAction", separator,
          "promptForBookmarkAction", "revealSelectionBundleInNavroAction", "openInNewWindowAction",
          separator, "updateSelectedObjectAction"}) {
        if (item)
            menu->addAction(InterfaceLoader::outlet<QAction>(window_, item));
        else
            menu->addSeparator();
    }
    menu->popup(globalPosition);
}

void EntryCommands::copy()
{
    QWidget *const focused = window_.focusWidget();
    if (auto *const fact = qobject_cast<FactField *>(focused); fact && fact->hasSelectedText())
        fact->copy();
    else if (auto *const field = qobject_cast<QLineEdit *>(focused);
             field && field->hasSelectedText())
        field->copy();
    else if (auto *const cell = qobject_cast<QPlainTextEdit *>(focused))
        cell->copy();
    else if (const QString rows = properties_.selectedText(); !rows.isNull())
        QGuiApplication::clipboard()->setText(rows);
    else if (selection_.entryPath())
        copyPath();
}

void EntryCommands::copyName()
{
    QGuiApplication::clipboard()->setText(
        selection_.entry()->nameAtLocationInPlane(selection_.registryPlane()));
}

void EntryCommands::copyPath()
{
    QGuiApplication::clipboard()->setText(selection_.registryPath());
}

void EntryCommands::copyClass()
{
    QGuiApplication::clipboard()->setText(selection_.entry()->DxcoreClass());
}

void EntryCommands::copyBundle()
{
    QGuiApplication::clipboard()->setText(selection_.entry()->bundleID());
}

void EntryCommands::copyKernelPath()
{
    QGuiApplication::clipboard()->setText(selection_.entry()->kernelPath());
}

bool EntryCommands::hasKernelPath() const
{
    return selection_.entry() && !selection_.entry()->kernelPath().isEmpty();
}

void EntryCommands::paste()
{
    auto *const field = qobject_cast<QLineEdit *>(window_.focusWidget());
    if (field && !field->isReadOnly())
        field->paste();
    else if (canPaste())
        selection_.goToRegistryPath(QGuiApplication::clipboard()->text());
}

bool EntryCommands::canPaste()
{
    const QMimeData *const data = QGuiApplication::clipboard()->mimeData();
    return data && data->hasFormat(QStringLiteral("text/plain"));
}

bool EntryCommands::hasBundle() const
{
    return selection_.entry() && !selection_.entry()->bundleID().isEmpty();
}

bool EntryCommands::hasBundlePath() const
{
    return selection_.entry() && !selection_.entry()->bundlePath().isEmpty();
}

void EntryCommands::revealSelectionBundleInNavro()
{
    const QString bundle = selection_.entry() ? selection_.entry()->bundlePath() : QString();
    if (!bundle.isEmpty())
        FileManager::reveal(bundle);
}
