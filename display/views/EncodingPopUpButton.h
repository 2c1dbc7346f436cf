// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "display/views/EncodingPopUpButtonCell.h"
#include "platform/runloop/NotificationCenter.h"
#include "platform/text/TextEncodings.h"
#include "platform/widgets/PopUpButton.h"

// Offers the enabled text encodings and an item to customize them. Refills itself when the user
// changes them.
class EncodingPopUpButton : public PopUpButton
{
    Q_OBJECT
public:
    explicit EncodingPopUpButton(QWidget *parent = nullptr);

    // TextEncodings::none selects the first item. With the default entry, "Automatic" is the first.
    void setEncoding(quint32 encoding, bool defaultEntry);
    // Of the selected item; none if it is not an encoding.
    quint32 selectedEncoding() const;
    void setupPopUp(quint32 selectedEncoding, bool withDefaultEntry);
    void encodingsListChanged();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void noteActivated() override;

private:
    EncodingPopUpButtonCell cell_;
    quint32 defaultEncoding_ = TextEncodings::none;
    bool hasDefaultEntry_ = false;
    NotificationCenter::Observation observation_;
};
