// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QTextBlock>
#include <QTextBrowser>
#include <vector>

// Shows the guide's text, which is part of the program.
class GuideView : public QTextBrowser
{
    Q_OBJECT
public:
    struct Section
    {
        QString title;
        QTextBlock heading;
    };

    explicit GuideView(QWidget *parent = nullptr);

    std::vector<Section> sections() const; // in order, without the main title
    void goToSection(const Section &section);
    QList<QTextCursor> matches(const QString &text) const; // in order, ignoring case
    void showMatch(const QTextCursor &match);              // selects it, with some lines around it

protected:
    QVariant loadResource(int type, const QUrl &name) override;
};
