#pragma once

#include <QTextBlock>
#include <QTextBrowser>
#include <vector>

// The text of the guide, which is part of the program.
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

    std::vector<Section> sections() const; // from the top, without the title of the whole
    void goToSection(const Section &section);
    QList<QTextCursor> matches(const QString &text) const; // from the top, whatever the case
    void showMatch(const QTextCursor &match);              // selected, with some lines around it

protected:
    QVariant loadResource(int type, const QUrl &name) override;
};
