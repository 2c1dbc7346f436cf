// SPDX-License-Identifier: Apache-2.0
#include "explorer/selection/EntryChooser.h"

#include "platform/widgets/MenuText.h"
#include "platform/widgets/VisibleText.h"

namespace {
constexpr std::size_t maxOffers = 25;
constexpr int maxWidth = 500;
} // namespace

EntryChooser::EntryChooser(const std::vector<EntryRef> &entries, const QString &plane,
                           QWidget &window)
    : QMenu(&window)
{
    setAttribute(Qt::WA_DeleteOnClose);
    addSection(tr("%1 entries have this name").arg(entries.size()));
    for (std::size_t i = 0; i < std::min(entries.size(), maxOffers); ++i)
        addEntry(entries[i], plane);
    if (entries.size() > maxOffers)
        addAction(tr("%1 more").arg(entries.size() - maxOffers))->setEnabled(false);
}

void EntryChooser::addEntry(const EntryRef &entry, const QString &plane)
{
    const QString text = visibleText(
        QStringLiteral("%1 — %2 — %3")
            .arg(entry->nameAtLocationInPlane(plane), entry->DxcoreClass(), entry->kernelPath()));
    addAction(menuText(fontMetrics().elidedText(text, Qt::ElideMiddle, maxWidth)), this,
              [this, entry] { Q_EMIT entryChosen(entry); });
}

void EntryChooser::popUp()
{
    const QRect window = parentWidget()->rect();
    const QSize size = sizeHint();
    popup(
        parentWidget()->mapToGlobal(window.center() - QPoint(size.width() / 2, size.height() / 2)));
    setActiveAction(actions().value(1));
}
