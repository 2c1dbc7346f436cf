// SPDX-License-Identifier: Apache-2.0
#include "app/CompareMenu.h"

#include "explorer/DateText.h"
#include "platform/desktop/DocumentCommands.h"
#include "platform/runloop/RunLoop.h"
#include "platform/widgets/MenuText.h"
#include "store/TavDocumentController.h"

#include <QFileDialog>
#include <QMenu>

CompareMenu::CompareMenu(QMenu &menu, TavDocument &document, TavDocumentController &documents,
                         const DocumentCommands &commands)
    : QObject(&menu)
    , menu_(menu)
    , document_(&document)
    , documents_(documents)
    , commands_(commands)
{
    connect(&menu, &QMenu::aboutToShow, this, &CompareMenu::rebuild);
    rebuild();
}

void CompareMenu::rebuild()
{
    menu_.clear();
    menu_.setEnabled(document_ && document_->isSnapshot());
    if (!menu_.isEnabled())
        return;
    connect(menu_.addAction(tr("&File…")), &QAction::triggered, this, &CompareMenu::askForFile);
    if (document_->openedState() || document_->markedState())
        menu_.addSeparator();
    if (const auto opened = document_->openedState())
        add(tr("As It Was When &Opened"), [this, opened] {
            return Side{tr("%1 when opened").arg(document_->displayName()), opened};
        });
    if (const auto marked = document_->markedState()) {
        const QString time = DateText::mediumTime(marked->lastUpdateDate());
        add(tr("As It Was &Marked at %1").arg(time), [this, marked, time] {
            return Side{tr("%1 at %2").arg(document_->displayName(), time), marked};
        });
    }
    menu_.addSeparator();
    for (const auto &document : documents_.documents()) {
        auto *const other = static_cast<TavDocument *>(document.get());
        if (other != document_ && other->isSnapshot())
            add(menuText(other->displayName()), [other = QPointer(other)] {
                return other ? Side{other->displayName(), other->dataStore()} : Side();
            });
    }
}

// Later: the menu is still closing.
void CompareMenu::add(const QString &title, std::function<Side()> other)
{
    connect(menu_.addAction(title), &QAction::triggered, this, [this, other = std::move(other)] {
        RunLoop::performLater(*this, [this, other] { compare(other()); });
    });
}

CompareMenu::Side CompareMenu::shown() const
{
    return {document_->displayName(), document_->dataStore()};
}

void CompareMenu::compare(Side other)
{
    if (document_ && other.store)
        FileComparison(documents_).open(shown(), std::move(other));
}

void CompareMenu::askForFile()
{
    auto *const dialog = new QFileDialog(menu_.window(), tr("Compare With"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setNameFilters({tr("Vandrel snapshots (*.vandrel)"), tr("All files (*)")});
    dialog->setFileMode(QFileDialog::ExistingFile);
    connect(dialog, &QFileDialog::fileSelected, this, [this](const QString &file) {
        RunLoop::performLater(*this, [this, file] { compareWithFile(file); });
    });
    dialog->open();
}

void CompareMenu::compareWithFile(const QString &file)
{
    DocumentError error;
    if (Side side = FileComparison(documents_).sideOf(file, error); side.store)
        compare(std::move(side));
    else
        commands_.showFailures({{file, error}}, menu_.window());
}
