// SPDX-License-Identifier: Apache-2.0
#include "app/CompareMenu.h"

#include "explorer/DateText.h"
#include "platform/desktop/DocumentCommands.h"
#include "platform/runloop/LongWork.h"
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

// The earlier one comes first.
void CompareMenu::compare(Side other)
{
    if (!document_ || !other.store)
        return;
    Side own = shown();
    const bool isOtherLater =
        other.store->isLive() ||
        (!own.store->isLive() && other.store->lastUpdateDate() > own.store->lastUpdateDate());
    if (isOtherLater)
        std::swap(own, other);
    if (auto document = ComparisonDocument::create(documents_, std::move(other), std::move(own)))
        documents_.add(std::move(document));
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
    if (auto *const open = static_cast<TavDocument *>(documents_.documentForFile(file)))
        return compare({open->displayName(), open->dataStore()});
    TavDocument document(documents_); // only for what it reads
    DocumentError error;
    LongWork work(tr("Opening “%1”…").arg(QFileInfo(file).fileName()));
    if (document.read(file, work, error))
        compare({document.displayName(), document.dataStore()});
    else
        commands_.showFailures({{file, error}}, menu_.window());
}
