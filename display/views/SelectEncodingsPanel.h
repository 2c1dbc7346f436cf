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
    QWidget *window() const { return window_.get(); } // null before it was first shown

private:
    SelectEncodingsPanel() = default;
    ~SelectEncodingsPanel() override;

    void load();
    void setupEncodingsList();
    void updateList(); // the check boxes, from what is enabled
    void encodingListChanged();

    std::unique_ptr<QWidget> window_;
    QListWidget *encodingsList_ = nullptr;
};
