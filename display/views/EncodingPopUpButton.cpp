// SPDX-License-Identifier: Apache-2.0
#include "display/views/EncodingPopUpButton.h"

#include "display/EncodingManager.h"
#include "display/views/SelectEncodingsPanel.h"

#include <QSignalBlocker>

namespace {
QString titleOf(quint32 encoding)
{
    const QString name = TextEncodings::displayName(encoding);
    return name.isNull() ? EncodingPopUpButton::tr("Encoding %1").arg(encoding) : name;
}
} // namespace

EncodingPopUpButton::EncodingPopUpButton(QWidget *parent)
    : PopUpButton(parent)
    , cell_(*this)
    , observation_(NotificationCenter::defaultCenter().observe(
          EncodingManager::listChangedNotification(), nullptr,
          [this](const auto &) { encodingsListChanged(); }))
{}

void EncodingPopUpButton::setEncoding(quint32 encoding, bool defaultEntry)
{
    defaultEncoding_ = encoding;
    hasDefaultEntry_ = defaultEntry;
    setupPopUp(encoding, defaultEntry);
}

quint32 EncodingPopUpButton::selectedEncoding() const
{
    const QVariant tag = currentData();
    return tag.isValid() ? tag.toUInt() : TextEncodings::none;
}

void EncodingPopUpButton::setupPopUp(quint32 selectedEncoding, bool withDefaultEntry)
{
    EncodingManager::Encodings encodings = EncodingManager::sharedInstance().enabledEncodings();
    const bool isListed =
        std::find(encodings.begin(), encodings.end(), selectedEncoding) != encodings.end();
    // The current choice is offered even if it is not enabled.
    if (!withDefaultEntry && selectedEncoding != TextEncodings::none && !isListed)
        encodings.push_back(selectedEncoding);

    const QSignalBlocker blocker(this); // no choice by the user
    clear();
    if (withDefaultEntry)
        addItem(tr("Automatic"), TextEncodings::none);
    int selected = 0;
    for (const quint32 encoding : encodings) {
        if (encoding == selectedEncoding)
            selected = count();
        addItem(titleOf(encoding), encoding);
    }
    if (count() > 0) {
        insertSeparator(count());
        setItemData(count() - 1, TextEncodings::none);
    }
    addItem(tr("Customize Encodings List…"), TextEncodings::none);
    setCurrentIndex(-1);
    cell_.selectItemAtIndex(selected);
    settle();
}

void EncodingPopUpButton::noteActivated()
{
    if (cell_.takeLastItemChosen())
        SelectEncodingsPanel::sharedInstance().showPanel();
    else
        PopUpButton::noteActivated();
}

void EncodingPopUpButton::encodingsListChanged()
{
    const quint32 selected = selectedEncoding();
    if (selected != 0 && selected != TextEncodings::none)
        defaultEncoding_ = selected;
    setupPopUp(defaultEncoding_, hasDefaultEntry_);
}

void EncodingPopUpButton::keyPressEvent(QKeyEvent *event)
{
    PopUpButton::keyPressEvent(event);
    cell_.takeLastItemChosen(); // stepping to the last item must not choose it
}
