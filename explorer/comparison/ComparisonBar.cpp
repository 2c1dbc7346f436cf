// SPDX-License-Identifier: Apache-2.0
#include "explorer/comparison/ComparisonBar.h"

#include "display/comparison/ComparedRegistry.h"
#include "display/comparison/ComparisonSummary.h"
#include "explorer/comparison/ComparisonDocument.h"
#include "platform/widgets/PlainToolTip.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QInputDialog>
#include <QLabel>
#include <QPushButton>
#include <QStyle>
#include <QToolButton>

namespace {
QToolButton *stepButton(const QString &icon, const QString &name, const char *objectName)
{
    auto *const button = new QToolButton;
    button->setIcon(QIcon::fromTheme(icon));
    button->setToolTip(name);
    button->setAccessibleName(name);
    button->setObjectName(QLatin1String(objectName));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}
} // namespace

ComparisonBar::ComparisonBar(ComparisonDocument &document)
    : document_(document)
    , summary_(new QLabel)
    , onlyDifferences_(new QCheckBox(tr("&Only differences")))
    , volatile_(new QCheckBox(tr("Also what &always changes")))
{
    setObjectName(QStringLiteral("comparisonBar"));
    summary_->setObjectName(QStringLiteral("comparisonSummary"));
    summary_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    onlyDifferences_->setObjectName(QStringLiteral("onlyDifferencesBox"));
    onlyDifferences_->setChecked(true);
    volatile_->setObjectName(QStringLiteral("volatileBox"));
    volatile_->setToolTip(tr("Counters, temperatures, clocks and numbers given in the order in "
                             "which devices are found"));
    auto *const ignored = new QPushButton(tr("&Ignored Keys…"));
    ignored->setObjectName(QStringLiteral("ignoredKeysButton"));
    auto *const previous = stepButton(QStringLiteral("go-up"), tr("Previous Difference (Shift+F8)"),
                                      "previousDifferenceButton");
    auto *const next =
        stepButton(QStringLiteral("go-down"), tr("Next Difference (F8)"), "nextDifferenceButton");
    auto *const layout = new QHBoxLayout(this);
    const int margin = style()->pixelMetric(QStyle::PM_LayoutLeftMargin);
    layout->setContentsMargins(margin, 0, margin, 0);
    layout->addWidget(summary_, 1);
    for (QWidget *const widget :
         std::initializer_list<QWidget *>{onlyDifferences_, volatile_, ignored, previous, next})
        layout->addWidget(widget);
    connect(onlyDifferences_, &QCheckBox::toggled, this, &ComparisonBar::filterChanged);
    connect(volatile_, &QCheckBox::toggled, &document_, &ComparisonDocument::setShowsVolatile);
    connect(ignored, &QPushButton::clicked, this, &ComparisonBar::askForIgnoredKeys);
    connect(previous, &QToolButton::clicked, this, &ComparisonBar::previousRequested);
    connect(next, &QToolButton::clicked, this, &ComparisonBar::nextRequested);
    update();
}

bool ComparisonBar::showsOnlyDifferences() const
{
    return onlyDifferences_->isChecked();
}

// What to keep in mind comes before the counts, so that nobody reads them without it.
void ComparisonBar::update()
{
    const SnapshotComparison &comparison = document_.comparison().comparison();
    const ComparedRegistry before(comparison.before(), document_.nameBefore());
    const ComparedRegistry after(comparison.after(), document_.nameAfter());
    QStringList lines = ComparedRegistry::notes(before, after);
    lines.append(ComparisonSummary::text(comparison.counts()));
    summary_->setText(lines.join(u'\n'));
    summary_->setToolTip(plainToolTip(before.line() + u'\n' + after.line()));
    const QSignalBlocker blocker(volatile_); // another window of the document may have changed it
    volatile_->setChecked(document_.showsVolatile());
}

void ComparisonBar::askForIgnoredKeys()
{
    auto *const dialog = new QInputDialog(this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(tr("Ignored Keys"));
    dialog->setLabelText(
        tr("Properties that comparisons leave out, one key or path on each line:"));
    dialog->setOption(QInputDialog::UsePlainTextEditForTextInput);
    dialog->setTextValue(document_.ignoredKeys().join(u'\n'));
    connect(dialog, &QInputDialog::textValueSelected, &document_, [this](const QString &text) {
        QStringList keys;
        for (const QString &line : text.split(u'\n')) {
            if (!line.trimmed().isEmpty())
                keys.append(line.trimmed());
        }
        document_.setIgnoredKeys(keys);
    });
    dialog->open();
}
