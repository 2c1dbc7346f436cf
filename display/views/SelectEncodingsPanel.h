#pragma once

#include <QWidget>

class QListWidget;

// The panel in which the user chooses, of all text encodings that there are, those to be offered.
// Loaded on first use.
class SelectEncodingsPanel : public QObject
{
    Q_OBJECT
public:
    static SelectEncodingsPanel &sharedInstance();

    void showPanel();
    static bool worksWhenModal() { return true; }     // is usable while a modal dialog is up
    QWidget *window() const { return window_.get(); } // null before it was first shown
    void setupEncodingsList();                        // once the panel was shown
    void encodingListChanged();                       // by a check box

private:
    SelectEncodingsPanel() = default;
    ~SelectEncodingsPanel() override;

    void load();
    void updateList(); // the check boxes, from what is enabled

    std::unique_ptr<QWidget> window_;
    QListWidget *encodingsList_ = nullptr;
};
