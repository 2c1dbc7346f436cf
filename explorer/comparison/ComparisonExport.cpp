// SPDX-License-Identifier: Apache-2.0
#include "explorer/comparison/ComparisonExport.h"

#include "display/PropertyFormatStore.h"
#include "display/comparison/ComparisonHtml.h"
#include "display/comparison/ComparisonJson.h"
#include "display/comparison/ComparisonText.h"
#include "explorer/comparison/ComparisonDocument.h"
#include "platform/documents/PortableFileName.h"
#include "platform/documents/ReplacementFile.h"
#include "platform/host/Alert.h"
#include "platform/preferences/PreferencesStore.h"
#include "platform/runloop/LongWork.h"
#include "platform/runloop/RunLoop.h"
#include "store/redaction/RedactedStore.h"

#include <QCheckBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QStandardPaths>

namespace {
using Reach = SnapshotComparison::Reach;

bool writeAs(const QString &suffix, const ExportedDifferences &differences, QIODevice &device,
             const Reach &reach)
{
    if (suffix == QLatin1String("html"))
        return ComparisonHtml::write(differences, device, reach);
    if (suffix == QLatin1String("json"))
        return ComparisonJson::write(differences, device, reach);
    return ComparisonText::write(differences, device, reach);
}
} // namespace

ComparisonExport::ComparisonExport(QWidget &window, const ComparisonDocument &document)
    : QObject(&window)
    , window_(window)
    , document_(document)
{}

void ComparisonExport::exportComparison()
{
    auto *const dialog = new QFileDialog(&window_, tr("Export Comparison"));
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setAcceptMode(QFileDialog::AcceptSave);
    const QStringList kinds{tr("Page (*.html)"), tr("Text (*.txt)"), tr("JSON (*.json)")};
    dialog->setNameFilters(kinds);
    dialog->setDefaultSuffix(QStringLiteral("html"));
    connect(dialog, &QFileDialog::filterSelected, dialog, [dialog, kinds](const QString &kind) {
        static const QStringList suffixes{QStringLiteral("html"), QStringLiteral("txt"),
                                          QStringLiteral("json")};
        dialog->setDefaultSuffix(suffixes.value(kinds.indexOf(kind)));
    });
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    dialog->setDirectory(QFileInfo::exists(folder) ? folder : QDir::homePath());
    dialog->selectFile(portableFileName(document_.displayName()));
    // The desktop's own dialog has no place for a box.
    dialog->setOption(QFileDialog::DontUseNativeDialog);
    auto *const redacted = new QCheckBox(tr("&Remove serial numbers and addresses"), dialog);
    auto *const layout = qobject_cast<QGridLayout *>(dialog->layout());
    layout->addWidget(redacted, layout->rowCount(), 0, 1, layout->columnCount());
    connect(dialog, &QFileDialog::fileSelected, this, [this, redacted](const QString &file) {
        RunLoop::performLater(
            *this, [this, file, isRedacted = redacted->isChecked()] { write(file, isRedacted); });
    });
    dialog->open();
}

void ComparisonExport::write(const QString &file, bool isRedacted)
{
    ReplacementFile replacement(file);
    if (replacement.open() &&
        writeTo(replacement.content(), QFileInfo(file).suffix().toLower(), isRedacted) &&
        replacement.commit())
        return;
    if (replacement.error() != QFileDevice::NoError) // else the user cancelled
        AlertPanel::show(
            {.title = QCoreApplication::applicationName(),
             .message = tr("“%1” could not be written.").arg(QFileInfo(file).fileName()),
             .buttons = {tr("OK")},
             .details = replacement.errorString(),
             .window = &window_});
}

bool ComparisonExport::writeTo(QIODevice &device, const QString &suffix, bool isRedacted) const
{
    // Open and written now, because the other thread only reads them.
    PropertyFormatStore::synchronize();
    PreferencesStore::standard().synchronize();
    const SnapshotComparison &shown = document_.comparison().comparison();
    RedactedStore::Pair copies; // which end on this thread
    bool isWritten = false;
    LongWork work(tr("Exporting…"));
    const auto writeOnThread = [&](WorkProgress &progress) {
        const Reach reach = [&](double part) { progress.reach(part); };
        if (!isRedacted) {
            isWritten = writeAs(suffix, {shown, document_.nameBefore(), document_.nameAfter()},
                                device, reach);
            return;
        }
        copies = RedactedStore::copiesOf(shown.before(), shown.after(), reach);
        const SnapshotComparison comparison(copies.before->store(), copies.after->store(),
                                            shown.options(), reach);
        isWritten = writeAs(suffix,
                            {comparison, copies.before->text(document_.nameBefore()),
                             copies.after->text(document_.nameAfter())},
                            device, reach);
    };
    return work.run(writeOnThread) && isWritten;
}
