// SPDX-License-Identifier: Apache-2.0
#include "app/HelpWindow.h"

#include "platform/desktop/ScreenBounds.h"
#include "platform/widgets/CloseKeys.h"

#include <QBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QShortcut>
#include <QSplitter>
#include <QTextBlock>
#include <QToolButton>

namespace {
constexpr int contentsWidth = 190;
constexpr int guideWidth = 760;
constexpr int windowHeight = 720;
constexpr float otherMatchOpacity = 0.35F;
} // namespace

HelpWindow::HelpWindow()
    : searchField_(new QLineEdit)
    , searchStatus_(new QLabel)
    , contents_(new QListWidget)
    , guide_(new GuideView)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(tr("Vandrel Guide"));
    setAccessibleName(windowTitle());
    guide_->setAccessibleName(tr("Guide"));
    auto *const splitter = new QSplitter;
    splitter->setChildrenCollapsible(false);
    splitter->addWidget(contents_);
    splitter->addWidget(guide_);
    splitter->setSizes({contentsWidth, guideWidth});
    splitter->setStretchFactor(1, 1);
    auto *const layout = new QVBoxLayout(this);
    layout->addLayout(makeSearchBar());
    layout->addWidget(splitter, 1);
    setUpContents();
    setUpKeys();
    search();
    guide_->setFocus();
    resize(contentsWidth + guideWidth, windowHeight);
    new ScreenBounds(*this);
}

void HelpWindow::showHelp()
{
    show();
    raise();
    activateWindow();
}

QBoxLayout *HelpWindow::makeSearchBar()
{
    searchField_->setObjectName(QStringLiteral("guideSearchField"));
    searchField_->setPlaceholderText(tr("Search the guide"));
    searchField_->setAccessibleName(tr("Search the guide"));
    searchField_->setClearButtonEnabled(true);
    searchField_->setMaximumWidth(guideWidth / 2);
    searchStatus_->setObjectName(QStringLiteral("guideSearchStatus"));
    connect(searchField_, &QLineEdit::textChanged, this, &HelpWindow::search);
    connect(searchField_, &QLineEdit::returnPressed, this, [this] { step(1); });
    auto *const bar = new QHBoxLayout;
    bar->addWidget(searchField_, 1);
    bar->addWidget(makeStepButton("go-up", tr("Find previous"), -1));
    bar->addWidget(makeStepButton("go-down", tr("Find next"), 1));
    bar->addWidget(searchStatus_);
    bar->addStretch(1);
    return bar;
}

QToolButton *HelpWindow::makeStepButton(const char *icon, const QString &name, int step)
{
    auto *const button = new QToolButton;
    button->setIcon(QIcon::fromTheme(QString::fromLatin1(icon)));
    button->setAutoRaise(true);
    button->setFocusPolicy(Qt::TabFocus);
    button->setToolTip(name);
    button->setAccessibleName(name);
    connect(button, &QToolButton::clicked, this, [this, step] { this->step(step); });
    stepButtons_.push_back(button);
    return button;
}

void HelpWindow::setUpContents()
{
    contents_->setObjectName(QStringLiteral("guideContents"));
    contents_->setAccessibleName(tr("Contents"));
    contents_->setSpacing(2);
    const std::vector<GuideView::Section> sections = guide_->sections();
    for (const GuideView::Section &section : sections)
        contents_->addItem(section.title);
    const auto go = [this, sections] {
        if (const int row = contents_->currentRow(); row >= 0)
            guide_->goToSection(sections[static_cast<std::size_t>(row)]);
    };
    connect(contents_, &QListWidget::currentRowChanged, this, go);
    connect(contents_, &QListWidget::itemClicked, this, go); // also the current one
}

void HelpWindow::setUpKeys()
{
    const auto key = [this](const QList<QKeySequence> &keys, auto action) {
        auto *const shortcut = new QShortcut(this);
        shortcut->setKeys(keys);
        connect(shortcut, &QShortcut::activated, this, action);
    };
    key(QKeySequence::keyBindings(QKeySequence::Find), [this] {
        searchField_->setFocus(Qt::ShortcutFocusReason);
        searchField_->selectAll();
    });
    key(QKeySequence::keyBindings(QKeySequence::FindNext), [this] { step(1); });
    key(QKeySequence::keyBindings(QKeySequence::FindPrevious) +
            QList<QKeySequence>{Qt::SHIFT | Qt::Key_Return},
        [this] { step(-1); });
    key({Qt::Key_Escape}, [this] { endSearchOrClose(); });
    CloseKeys::addTo(*this);
}

void HelpWindow::search()
{
    matches_ = guide_->matches(searchField_->text());
    // While typing, a match that still matches stays selected.
    const int from = guide_->textCursor().selectionStart();
    const auto next = std::find_if(matches_.cbegin(), matches_.cend(), [from](const auto &match) {
        return match.selectionStart() >= from;
    });
    match_ = next != matches_.cend() ? next - matches_.cbegin() : 0;
    showMatch();
}

void HelpWindow::step(int by)
{
    if (matches_.isEmpty())
        return;
    match_ = (match_ + by + matches_.size()) % matches_.size();
    showMatch();
}

void HelpWindow::showMatch()
{
    QColor color = palette().color(QPalette::Highlight);
    color.setAlphaF(otherMatchOpacity);
    QTextCharFormat format;
    format.setBackground(color);
    QList<QTextEdit::ExtraSelection> others;
    for (const QTextCursor &match : std::as_const(matches_))
        others.append({match, format});
    guide_->setExtraSelections(others);
    for (QToolButton *button : stepButtons_)
        button->setEnabled(!matches_.isEmpty());
    if (!matches_.isEmpty()) {
        guide_->showMatch(matches_[match_]);
        searchStatus_->setText(tr("%1 of %2").arg(match_ + 1).arg(matches_.size()));
    } else {
        searchStatus_->setText(searchField_->text().isEmpty() ? QString() : tr("Not found"));
    }
}

void HelpWindow::endSearchOrClose()
{
    if (searchField_->text().isEmpty())
        close();
    searchField_->clear();
    guide_->setFocus();
}
