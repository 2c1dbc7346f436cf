// SPDX-License-Identifier: Apache-2.0
#include "explorer/IncompleteBar.h"

#include "platform/desktop/AlertBox.h"

#include <QBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QStyle>

IncompleteBar::IncompleteBar()
    : text_(new QLabel)
    , tryAgainButton_(new QPushButton(tr("&Try Again")))
{
    setObjectName(QStringLiteral("incompleteBar"));
    setFrameShape(QFrame::StyledPanel);
    auto *const icon = new QLabel;
    const int size = style()->pixelMetric(QStyle::PM_SmallIconSize);
    icon->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning).pixmap(size));
    text_->setWordWrap(true);
    tryAgainButton_->setObjectName(QStringLiteral("tryAgainButton"));
    tryAgainButton_->setAccessibleName(tr("Try Again"));
    auto *const listButton = new QPushButton(tr("Show &List"));
    listButton->setObjectName(QStringLiteral("showIncompleteButton"));
    listButton->setAccessibleName(tr("Show List"));
    auto *const layout = new QHBoxLayout(this);
    layout->addWidget(icon);
    layout->addWidget(text_, 1);
    layout->addWidget(listButton);
    layout->addWidget(tryAgainButton_);
    connect(listButton, &QPushButton::clicked, this, &IncompleteBar::showList);
    connect(tryAgainButton_, &QPushButton::clicked, this, &IncompleteBar::tryAgainRequested);
    hide();
}

QString IncompleteBar::message(qsizetype devices)
{
    switch (devices) {
    case 0:
        return {};
    case 1:
        return tr("One device did not answer. Some of its attributes are missing.");
    default:
        return tr("%1 devices did not answer. Some of their attributes are missing.").arg(devices);
    }
}

void IncompleteBar::setObjects(const QStringList &paths, bool canTryAgain)
{
    paths_ = paths;
    text_->setText(message(paths.size()));
    setAccessibleName(text_->text());
    tryAgainButton_->setVisible(canTryAgain);
    setVisible(!paths.isEmpty());
}

void IncompleteBar::showList()
{
    constexpr qsizetype maxListed = 20; // the rest is behind a button
    const bool isLong = paths_.size() > maxListed;
    AlertBox::show({.title = tr("Devices That Did Not Answer"),
                    .message = text_->text(),
                    .details = paths_.mid(0, maxListed).join(u'\n') +
                               (isLong ? QStringLiteral("\n…") : QString()),
                    .moreDetails = isLong ? paths_.join(u'\n') : QString(),
                    .window = this});
}
