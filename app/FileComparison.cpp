// SPDX-License-Identifier: Apache-2.0
#include "app/FileComparison.h"

#include "platform/runloop/LongWork.h"
#include "store/TavDocumentController.h"

#include <QFileDialog>

FileComparison::Side FileComparison::sideOf(const QString &file, DocumentError &error)
{
    if (auto *const open = static_cast<TavDocument *>(documents_.documentForFile(file)))
        return {open->displayName(), open->dataStore()};
    TavDocument document(documents_); // only for what it reads
    LongWork work(tr("Opening “%1”…").arg(QFileInfo(file).fileName()));
    return document.read(file, work, error) ? Side{document.displayName(), document.dataStore()}
                                            : Side();
}

bool FileComparison::open(Side one, Side other)
{
    const bool isOtherLater =
        other.store->isLive() ||
        (!one.store->isLive() && other.store->lastUpdateDate() > one.store->lastUpdateDate());
    if (!isOtherLater)
        std::swap(one, other);
    auto document = ComparisonDocument::create(documents_, std::move(one), std::move(other));
    if (!document)
        return false;
    documents_.add(std::move(document));
    return true;
}

QStringList FileComparison::chooseFiles(QWidget *window)
{
    QFileDialog dialog(window, tr("Choose Two Snapshots to Compare"));
    dialog.setNameFilters({tr("Vandrel snapshots (*.vandrel)"), tr("All files (*)")});
    dialog.setFileMode(QFileDialog::ExistingFiles);
    while (dialog.exec() == QDialog::Accepted) {
        if (dialog.selectedFiles().size() == 2)
            return dialog.selectedFiles();
        dialog.setWindowTitle(
            tr("Choose Two Snapshots, Not %1").arg(dialog.selectedFiles().size()));
    }
    return {};
}
