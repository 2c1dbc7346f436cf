// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>
#include <QPointer>

class QLineEdit;

// A dialog from an interface file that keeps its window from being used. Subclasses report what
// the user entered.
class Sheet : public QObject
{
    Q_OBJECT
public:
    void cancel(); // both end the sheet
    void perform();

Q_SIGNALS:
    void performed(); // after the subclass has reported what was entered

protected:
    Sheet(const char *interfaceFile, QWidget &window);
    ~Sheet() override;

    QDialog &dialog() const { return *dialog_; }
    void connectButtons(const char *cancelButton, const char *performButton);
    void openAt(QLineEdit &field); // with its text selected
    virtual void report() = 0;

private:
    QPointer<QDialog> dialog_; // the window's
};
