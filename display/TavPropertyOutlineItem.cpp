// SPDX-License-Identifier: Apache-2.0
#include "display/TavPropertyOutlineItem.h"

#include "display/DataRendering.h"
#include "display/DisplayLogging.h"
#include "display/NumberRendering.h"
#include "display/UnitFormatter.h"
#include "display/ValueDescription.h"
#include "display/ValueStyles.h"
#include "model/EntryStore.h"
#include "model/TavRegistryEntry.h"
#include "platform/preferences/PreferenceKeys.h"

#include <new>

TavPropertyOutlineItem::TavPropertyOutlineItem(PropertyTree &tree)
    : TavRegistryProperty(tree)
{}

TavPropertyOutlineItem::~TavPropertyOutlineItem() = default;

const PropertyClass &TavPropertyOutlineItem::staticPropertyClass()
{
    static const PropertyClass propertyClass{
        &TavRegistryProperty::staticPropertyClass(), sizeof(TavPropertyOutlineItem),
        [](void *storage, PropertyTree &tree) -> TavRegistryProperty * {
            return new (storage) TavPropertyOutlineItem(tree);
        }};
    return propertyClass;
}

QJsonObject TavPropertyOutlineItem::defaultsToRegister()
{
    return {
        {PreferenceKeys::defaultFormat.name, QString(PreferenceKeys::defaultFormat.defaultValue)}};
}

QString TavPropertyOutlineItem::typeName() const
{
    if (!isCollection() && contents().isNone())
        return {};
    switch (valueType()) {
    case Type::Number:
        return tr("Number");
    case Type::String:
        return tr("String");
    case Type::Data:
        return tr("Data");
    case Type::Boolean:
        return tr("Boolean");
    case Type::Dictionary:
        return tr("Dictionary");
    case Type::Array:
        return tr("Array");
    case Type::Set:
        return tr("Set");
    default:
        return tr("Unknown");
    }
}

const StyledText &TavPropertyOutlineItem::displayValue()
{
    Rendering &kept = rendering();
    if (kept.value.isNull())
        kept.value = render();
    return kept.value;
}

StyledText TavPropertyOutlineItem::render()
{
    switch (valueType()) {
    case Type::Number:
        return formattedNumberValue();
    case Type::Data:
        return formattedDataValue();
    default:
        return StyledText(plainText(), ValueStyles::plain);
    }
}

QString TavPropertyOutlineItem::plainText() const
{
    switch (valueType()) {
    case Type::Dictionary:
    case Type::Array:
        return (numberOfChildren() == 1 ? tr("%1 value") : tr("%1 values")).arg(numberOfChildren());
    case Type::String:
        return contents().toString();
    case Type::Boolean:
        return truthText(contents().toBoolean());
    default:
        return unknownTypeText();
    }
}

void TavPropertyOutlineItem::resetDisplayValueRecursive()
{
    std::vector<TavPropertyOutlineItem *> pending{this};
    while (!pending.empty()) {
        TavPropertyOutlineItem *item = pending.back();
        pending.pop_back();
        const Type type = item->valueType();
        if (type == Type::Number || type == Type::Data || type == Type::String) {
            if (item->rendering_)
                item->rendering_->value = {};
            continue;
        }
        for (qsizetype i = 0; i < item->numberOfChildren(); ++i) {
            if (auto *child = dynamic_cast<TavPropertyOutlineItem *>(item->childAtIndex(i)))
                pending.push_back(child);
        }
    }
}

QString TavPropertyOutlineItem::valueTooltip() const
{
    switch (valueType()) {
    case Type::Data:
        return descriptionOfData(static_cast<quint64>(contents().toData().size()),
                                 propertyFormat());
    case Type::Number:
        return descriptionOfData(static_cast<quint64>(contents().numberWidth()), propertyFormat());
    case Type::String:
        return tr("Nul-terminated ASCII string");
    default:
        return {};
    }
}

StyledText TavPropertyOutlineItem::formattedNumberValue()
{
    return formatNumberWithOptions(propertyFormat());
}

StyledText TavPropertyOutlineItem::formattedDataValue()
{
    const PropertyFormatOptions format = propertyFormat();
    const bool isAutomatic = format.unit == PropertyFormatOptions::automatic ||
                             format.unit == PropertyFormatOptions::useDefault;
    return isAutomatic ? autoformattedDataValue() : formatDataValueWithOptions(format);
}

StyledText TavPropertyOutlineItem::formatNumberWithOptions(const PropertyFormatOptions &options)
{
    if (options.unit == PropertyFormatOptions::useDefault) {
        qCWarning(displayLog, "Invalid default data view type for formatNumberWithOptions:");
        return {};
    }
    return StyledText(NumberRendering::text(contents(), options, machineByteOrder()),
                      ValueStyles::plain);
}

StyledText TavPropertyOutlineItem::formatDataValueWithOptions(const PropertyFormatOptions &options)
{
    const QByteArray bytes = contents().toData();
    if (options.unit == PropertyFormatOptions::characters) {
        DataRendering::Characters characters = DataRendering::characters(bytes, options.encoding);
        rendering().characters = characters.count;
        return std::move(characters.text);
    }
    DataRendering::Integers integers = DataRendering::integers(bytes, options, machineByteOrder());
    rendering().characters = 0;
    rendering().hasLeftoverBytes = integers.hasLeftoverBytes;
    return std::move(integers.text);
}

StyledText TavPropertyOutlineItem::autoformattedDataValue()
{
    DataRendering::Automatic automatic =
        DataRendering::automatic(contents().toData(), machineByteOrder());
    rendering().strings = automatic.strings;
    return std::move(automatic.text);
}

QString TavPropertyOutlineItem::formatAndAdvanceBytes(QByteArrayView &bytes,
                                                      const PropertyFormatOptions &options,
                                                      const char *format) const
{
    const auto kind = isNumber() ? UnitFormatter::Kind::Number : UnitFormatter::Kind::Data;
    QString text;
    UnitFormatter(kind, options, machineByteOrder()).appendUnit(text, bytes, format);
    return text;
}

const char *
TavPropertyOutlineItem::propertyFormatStringForOptions(const PropertyFormatOptions &options) const
{
    const auto kind = isNumber() ? UnitFormatter::Kind::Number : UnitFormatter::Kind::Data;
    return UnitFormatter::formatText(kind, options);
}

PropertyFormatOptions TavPropertyOutlineItem::automaticPropertyFormatOptions()
{
    return {.unit = 8, .base = 16};
}

QString TavPropertyOutlineItem::descriptionOfData(quint64 byteCount,
                                                  const PropertyFormatOptions &options) const
{
    if (options.unit == PropertyFormatOptions::useDefault) {
        qCWarning(displayLog,
                  "Invalid default data view type for descriptionOfData:formatOptions:");
        return {};
    }
    if (isNumber())
        return ValueDescription::ofNumber(byteCount, options);
    return ValueDescription::ofData(
        {byteCount, numStringsInDataValue(), numCharsInDataValue(), leftoverBytesInDataValue()},
        options);
}

quint32 TavPropertyOutlineItem::numStringsInDataValue() const
{
    return rendering_ ? rendering_->strings : 0;
}

quint32 TavPropertyOutlineItem::numCharsInDataValue() const
{
    return rendering_ ? rendering_->characters : 0;
}

bool TavPropertyOutlineItem::leftoverBytesInDataValue() const
{
    return rendering_ && rendering_->hasLeftoverBytes;
}

TavPropertyOutlineItem::Rendering &TavPropertyOutlineItem::rendering()
{
    if (!rendering_)
        rendering_ = std::make_unique<Rendering>();
    return *rendering_;
}

qint32 TavPropertyOutlineItem::machineByteOrder() const
{
    const std::shared_ptr<TavRegistryEntry> entry = registryEntry();
    return entry && entry->dataStore() ? entry->dataStore()->byteOrder()
                                       : EntryStore::ByteOrderUnknown;
}
