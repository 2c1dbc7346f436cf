// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QWidget>

class QListWidget;

// The panel in which the user enables text encodings. Loaded on first use.
class SelectEncodingsPanel : public QObject
{
    Q_OBJECT
public:
    static SelectEncodingsPanel &sharedInstance();

    void showPanel();
    static bool worksWhenModal() { return true; }     // usable during a modal dialog
    QWidget *window() const { return window_.get(); } // null until first shown
    void setupEncodingsList();                        // after the panel was first shown
    void encodingListChanged();                       // by a check box

private:
    SelectEncodingsPanel() = default;
    ~SelectEncodingsPanel() override;

    void load();
    void updateList(); // sets the check boxes

    std::unique_ptr<QWidget> window_;
    QListWidget *encodingsList_ = nullptr;
};
