// SPDX-License-Identifier: Apache-2.0
#include "platform/desktop/WaitDialog.h"

#include "platform/widgets/PlainToolTip.h"
#include "platform/widgets/VisibleText.h"

#include <QBoxLayout>
#include <QDialogButtonBox>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>

namespace {
constexpr int subjectWidth = 56; // characters
constexpr int subjectLines = 2;
} // namespace

WaitDialog::WaitDialog(QWidget *parent)
    : QDialog(parent)
    , subjectLabel_(new QLabel)
{
    setWindowModality(Qt::ApplicationModal);
    auto *const text = new QLabel(tr("Reading the device registry…"));
    setAccessibleName(text->text());
    auto *const bar = new QProgressBar;
    bar->setRange(0, 0);
    bar->setAccessibleName(text->text());
    subjectLabel_->setObjectName(QStringLiteral("waitSubject"));
    subjectLabel_->setTextFormat(Qt::PlainText);
    subjectLabel_->setAlignment(Qt::AlignTop | Qt::AlignLeading);
    // A fixed size keeps the buttons in place under the pointer.
    subjectLabel_->setFixedSize(subjectWidth * fontMetrics().averageCharWidth(),
                                subjectLines * fontMetrics().lineSpacing());
    auto *const buttons = new QDialogButtonBox;
    skipButton_ = buttons->addButton(tr("&Skip"), QDialogButtonBox::ActionRole);
    skipButton_->setObjectName(QStringLiteral("skipButton"));
    skipButton_->setToolTip(tr("Continue without the device that does not answer"));
    skipButton_->setEnabled(false);
    cancelButton_ = buttons->addButton(QDialogButtonBox::Cancel);
    cancelButton_->setObjectName(QStringLiteral("cancelButton"));
    cancelButton_->setDefault(true);
    auto *const layout = new QVBoxLayout(this);
    for (QWidget *part : std::initializer_list<QWidget *>{text, bar, subjectLabel_, buttons})
        layout->addWidget(part);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    cancelButton_->setFocus(); // Skip is disabled at times
    connect(skipButton_, &QPushButton::clicked, this, &WaitDialog::skip);
    connect(cancelButton_, &QPushButton::clicked, this, &WaitDialog::reject);
}

void WaitDialog::showWait(Wait &wait)
{
    wait_ = &wait;
    if (const Wait::Subject subject = wait.subject(); subject != shown_)
        showSubject(subject);
    show();
}

void WaitDialog::showSubject(const Wait::Subject &subject)
{
    shown_ = subject;
    skipButton_->setEnabled(!subject.object.isNull());
    QStringList lines;
    if (!subject.object.isNull())
        lines.append(tr("Waiting for %1").arg(visibleText(subject.object)));
    if (!subject.part.isNull())
        lines.append(tr("Attribute: %1").arg(visibleText(subject.part)));
    const QString whole = lines.join(u'\n');
    subjectLabel_->setAccessibleName(whole);
    setAccessibleDescription(whole);
    subjectLabel_->setToolTip(plainToolTip(whole));
    for (QString &line : lines)
        line = fitting(line);
    subjectLabel_->setText(lines.join(u'\n'));
}

// Elides the middle, because the end of a long path matters most.
QString WaitDialog::fitting(const QString &text) const
{
    return subjectLabel_->fontMetrics().elidedText(text, Qt::ElideMiddle, subjectLabel_->width());
}

void WaitDialog::skip()
{
    skipButton_->setEnabled(false);
    wait_->skip();
}

void WaitDialog::reject()
{
    cancelButton_->setEnabled(false);
    wait_->cancel();
}
