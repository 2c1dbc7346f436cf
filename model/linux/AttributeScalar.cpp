// SPDX-License-Identifier: Apache-2.0
// The values of texts without structure.
#include "model/linux/AttributeNumbers.h"
#include "model/linux/AttributeParser.h"
#include "model/linux/AttributeText.h"

#include <QSet>

namespace {
using namespace AttributeNumbers;
using namespace AttributeText;
using Value = RegistryValue;

Value string(View text, TextPool &pool)
{
    constexpr qsizetype shortText = 24;
    return Value::string(text.size() <= shortText ? pool.text(text).toOwner()
                                                  : QString::fromUtf8(text));
}

bool isUsbIdentifier(View name)
{
    return name == "idVendor" || name == "idProduct" || name == "bcdDevice";
}

// Hexadecimal without prefix: digits alone would look decimal.
bool isBareHexadecimal(View name, View text)
{
    static const QSet<QByteArray> names{"PCI_CLASS",
                                        "bDeviceClass",
                                        "bDeviceProtocol",
                                        "bDeviceSubClass",
                                        "bEndpointAddress",
                                        "bInterfaceClass",
                                        "bInterfaceNumber",
                                        "bInterfaceProtocol",
                                        "bInterfaceSubClass",
                                        "bLength",
                                        "bNumEndpoints",
                                        "bmAttributes",
                                        "bustype",
                                        "core_cpus",
                                        "core_siblings",
                                        "cpumap",
                                        "die_cpus",
                                        "local_cpus",
                                        "package_cpus",
                                        "product",
                                        "shared_cpu_map",
                                        "thread_siblings",
                                        "vendor",
                                        "wMaxPacketSize"};
    return names.contains(QByteArray::fromRawData(name.data(), name.size())) &&
           std::all_of(text.begin(), text.end(), [](char c) { return isHexDigit(c) || c == ','; });
}

// "0-3,8": numbers and ranges.
Value rangeList(View text, TextPool &pool)
{
    const bool isList = std::all_of(text.begin(), text.end(),
                                    [](char c) { return isDigit(c) || c == '-' || c == ','; });
    if (!isList || !isDigit(text.front()))
        return {};
    Value::Elements ranges;
    for (const View range : split(text, ',')) {
        Value value = decimalNumber(range);
        ranges.push_back(value.isNone() ? string(range, pool) : std::move(value));
    }
    return Value::array(std::move(ranges));
}

// "a [b] c": one of several choices is selected.
Value selection(View text, TextPool &pool)
{
    Value selected;
    Value::Elements choices;
    for (View word : words(text)) {
        if (word.size() > 2 && word.startsWith('[') && word.endsWith(']')) {
            if (!selected.isNone())
                return {};
            word = word.sliced(1, word.size() - 2);
            selected = string(word, pool);
        }
        choices.push_back(string(word, pool));
    }
    if (selected.isNone())
        return {};
    return Value::dictionary({{pool.text("choices"), Value::array(std::move(choices))},
                              {pool.text("selected"), std::move(selected)}});
}
} // namespace

RegistryValue parseScalar(QByteArrayView name, QByteArrayView text, TextPool &pool)
{
    if (text.isEmpty())
        return string(text, pool);
    Value value;
    if (isUsbIdentifier(name)) {
        if (text.size() == 4 && std::all_of(text.begin(), text.end(), isHexDigit))
            return Value::number(parseUnsigned(text, 16).value_or(0), 2, false,
                                 Value::Notation::Hexadecimal);
    } else if (isDigit(text.front()) && isBareHexadecimal(name, text)) {
        return string(text, pool);
    } else if (name.endsWith("_list")) {
        value = rangeList(text, pool);
    }
    if (value.isNone() && text.contains('['))
        value = selection(text, pool);
    if (value.isNone())
        value = number(text);
    if (value.isNone() && (text == "Y" || text == "N"))
        value = Value::boolean(text == "Y");
    if (value.isNone() && text.contains(' ')) {
        Value::Elements list = numbers(text);
        if (list.size() > 1)
            value = Value::array(std::move(list));
    }
    return value.isNone() ? string(text, pool) : value;
}
