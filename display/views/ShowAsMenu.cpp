// SPDX-License-Identifier: Apache-2.0
#include "display/views/ShowAsMenu.h"

#include "display/TavPropertyOutlineItem.h"
#include "platform/text/TextEncodings.h"

namespace {
// Whether both show the value in the same way: other fields are leftovers.
bool areAlike(const PropertyFormatOptions &a, const PropertyFormatOptions &b)
{
    if (!a.isInteger() || !b.isInteger())
        return a.unit == b.unit;
    return a.base == b.base && (a.base != 10 || (a.signedness == 1) == (b.signedness == 1));
}
} // namespace

ShowAsMenu::ShowAsMenu(TavPropertyOutlineItem &item, QWidget *parent)
    : QMenu(tr("Sho&w As"), parent)
    , keptItem_(item.ref())
    , current_(item.propertyFormat())
{
    addFormat(tr("As &Written"), {.unit = PropertyFormatOptions::automatic});
    addFormat(tr("&Decimal"), integers(10));
    addFormat(tr("&Signed Decimal"), integers(10, 1));
    addFormat(tr("&Hexadecimal"), integers(16));
    addFormat(tr("&Octal"), integers(8));
    addFormat(tr("&Binary"), integers(2));
    addFormat(tr("&Characters"), characters());
    addSeparator();
    const auto stored = item.getPropertyFormats();
    addAction(tr("&Reset"), this, &ShowAsMenu::resetChosen)
        ->setEnabled(stored && !stored->isShared);
}

bool ShowAsMenu::isFor(const TavRegistryProperty &item)
{
    return item.valueType() == RegistryValue::Type::Number ||
           item.valueType() == RegistryValue::Type::Data;
}

void ShowAsMenu::addFormat(const QString &title, const PropertyFormatOptions &options)
{
    QAction *const action =
        addAction(title, this, [this, options] { Q_EMIT formatChosen(options); });
    action->setCheckable(true);
    action->setChecked(areAlike(options, current_));
}

// Data keeps the width and byte order that the user has chosen for it.
PropertyFormatOptions ShowAsMenu::integers(qint64 base, qint64 signedness) const
{
    const bool isData = keptItem_->valueType() == RegistryValue::Type::Data;
    PropertyFormatOptions options{.unit = isData ? 1 : 8, .base = base, .signedness = signedness};
    if (current_.isInteger()) {
        options.unit = current_.unit;
        options.byteOrder = current_.byteOrder;
    }
    return options;
}

PropertyFormatOptions ShowAsMenu::characters() const
{
    const bool hasEncoding = current_.unit == PropertyFormatOptions::characters;
    return {.unit = PropertyFormatOptions::characters,
            .encoding = hasEncoding ? current_.encoding : TextEncodings::kelRoman};
}
