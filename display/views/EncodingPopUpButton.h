#pragma once

#include "display/views/EncodingPopUpButtonCell.h"
#include "platform/NotificationCenter.h"
#include "platform/TextEncodings.h"

#include <QComboBox>

// Offers the enabled text encodings, and to customize which these are. Fills itself again whenever
// the user changed them.
class EncodingPopUpButton : public QComboBox
{
    Q_OBJECT
public:
    explicit EncodingPopUpButton(QWidget *parent = nullptr);

    // TextEncodings::none selects the first item. With the default entry, "Automatic" comes first.
    void setEncoding(quint32 encoding, bool defaultEntry);
    // Of the selected item; none for one that is no encoding.
    quint32 selectedEncoding() const;

Q_SIGNALS:
    void encodingChosen(); // by the user

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void setupPopUp(quint32 selectedEncoding, bool withDefaultEntry);
    void noteActivated();
    void encodingsListChanged();

    EncodingPopUpButtonCell cell_;
    quint32 defaultEncoding_ = TextEncodings::none;
    bool hasDefaultEntry_ = false;
    bool isStepping_ = false; // through the items, without the pop-up's menu
    NotificationCenter::Observation observation_;
};
