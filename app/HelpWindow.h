#pragma once

#include <QTextBrowser>

// Shows the guide, which is part of the program.
class HelpWindow : public QTextBrowser
{
    Q_OBJECT
public:
    HelpWindow();
    void showHelp();

protected:
    QVariant loadResource(int type, const QUrl &name) override;
};
