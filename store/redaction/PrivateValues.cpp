// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/PrivateValues.h"

namespace {
constexpr qsizetype anywhereLength = 8;       // shorter ones may be parts of other words
constexpr quint64 smallestNumber = 1'000'000; // smaller ones occur by chance

// Some attributes are in quotes.
QString normalized(const QString &value)
{
    QString text = TextReplacer::folded(value.trimmed());
    if (text.size() > 1 && text.startsWith(u'"') && text.endsWith(u'"'))
        text = text.sliced(1, text.size() - 2).trimmed();
    return text;
}

bool isHexadecimal(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar c) {
        return (c >= u'0' && c <= u'9') || (c >= u'a' && c <= u'f');
    });
}

QString digitsOf(const QString &folded)
{
    return QString(folded).remove(u':').remove(u'-');
}

QString withoutPrefix(const QString &folded)
{
    for (const QLatin1String prefix : {QLatin1String("0x"), QLatin1String("naa."),
                                       QLatin1String("eui."), QLatin1String("t10.")}) {
        if (folded.startsWith(prefix))
            return folded.sliced(prefix.size());
    }
    return folded;
}

QString pairs(const QString &digits, QChar separator)
{
    QString text;
    for (qsizetype i = 0; i < digits.size(); i += 2) {
        if (i > 0)
            text += separator;
        text += QStringView(digits).sliced(i, std::min<qsizetype>(2, digits.size() - i));
    }
    return text;
}

bool isAddress(const QString &digits)
{
    constexpr qsizetype digitsOfAddress = 12;
    return digits.size() == digitsOfAddress && isHexadecimal(digits);
}

// As udev writes a value with blanks into names of links, and into keys that end in "_ENC".
QStringList udevForms(const QString &value)
{
    if (!value.contains(u' '))
        return {value};
    return {value, value.simplified().replace(u' ', u'_'),
            QString(value).replace(QLatin1String(" "), QLatin1String("\\x20"))};
}

const char *wordFor(PrivacyRules::Kind kind)
{
    using enum PrivacyRules::Kind;
    switch (kind) {
    case Serial:
        return "serial";
    case Uuid:
        return "uuid";
    case Wwn:
        return "wwn";
    case Mac:
        return "mac";
    case Ip:
        return "ip";
    case Asset:
        return "asset";
    case Host:
        return "host";
    }
    return "";
}
} // namespace

void PrivateValues::add(Kind kind, const QString &value, Source source)
{
    const QString text = normalized(value);
    const QString digits = digitsOf(text);
    if (known_.contains(text))
        return;
    switch (kind) {
    case Kind::Mac:
        if (isAddress(digits))
            return add({kind, source, digits, {pairs(digits, u':'), pairs(digits, u'-'), digits}});
        return add({kind, source, digits, {text}});
    case Kind::Uuid:
        return add({kind, source, digits, {text}});
    case Kind::Wwn: {
        const QString bare = withoutPrefix(text);
        if (bare != text && isHexadecimal(bare))
            return add({kind, source, bare, {text, bare}});
        return add({kind, source, bare, udevForms(text)});
    }
    default:
        return add({kind, source, text, udevForms(text)});
    }
}

void PrivateValues::addNumber(Kind kind, const RegistryValue &number)
{
    constexpr int hexadecimal = 16;
    const QString decimal = QString::number(number.numberBits());
    const QString digits = QString::number(number.numberBits(), hexadecimal);
    const QString whole = digits.rightJustified(2 * number.numberWidth(), u'0');
    if (known_.contains(decimal))
        return;
    const QStringList forms{decimal, QLatin1String("0x") + digits, QLatin1String("0x") + whole,
                            whole};
    add({kind, Source::Key, kind == Kind::Wwn ? whole : decimal, forms});
}

void PrivateValues::addHost(const QString &name)
{
    Value host{Kind::Host, Source::Key, TextReplacer::folded(name), {TextReplacer::folded(name)}};
    host.isOnlyItself = PrivacyRules::instance().isCommonHost(name);
    add(std::move(host));
}

void PrivateValues::add(Value value)
{
    if (PrivacyRules::instance().isPublicValue(value.forms.front()))
        return;
    for (const QString &form : value.forms)
        known_.insert(form, static_cast<qsizetype>(values_.size()));
    values_.push_back(std::move(value));
}

void PrivateValues::addPublic(const QString &value)
{
    public_.insert(normalized(value));
}

void PrivateValues::addName(const QString &name)
{
    names_.insert(TextReplacer::folded(name));
}

bool PrivateValues::isPublic(const Value &value) const
{
    return public_.contains(value.forms.front()) ||
           (value.source == Source::Key && value.kind != Kind::Host &&
            names_.contains(value.forms.front()));
}

void PrivateValues::assignTokens()
{
    QHash<QString, quint32> numbers; // by identity
    QHash<Kind, quint32> counts;
    for (const Value &value : values_) {
        if (isPublic(value))
            continue;
        const auto number = numbers.constFind(value.identity);
        const quint32 own = number == numbers.constEnd()
                                ? *numbers.insert(value.identity, ++counts[value.kind])
                                : *number;
        for (const QString &form : value.forms)
            addForm(value, form, own);
    }
}

void PrivateValues::addForm(const Value &value, const QString &form, quint32 number)
{
    if (tokens_.contains(form))
        return;
    const QString token = tokenOf(value.kind, form, number);
    tokens_.insert(form, token);
    constexpr int decimal = 10;
    constexpr int hexadecimal = 16;
    bool isNumber = false;
    const quint64 bits =
        form.toULongLong(&isNumber, form.startsWith(QLatin1String("0x")) ? hexadecimal : decimal);
    if (isNumber && bits >= smallestNumber)
        numberTokens_.insert(bits, token);
    const bool isShort = form.size() < anywhereLength;
    const bool isCommonNumber = isShort && isNumber && bits < smallestNumber;
    const bool isName = value.source == Source::Key && names_.contains(form);
    if (!value.isOnlyItself && !isName && !isCommonNumber)
        replacer_.add(form, token, isShort);
}

// Addresses and UUIDs keep their form, because programs parse them.
QString PrivateValues::tokenOf(Kind kind, const QString &form, quint32 number)
{
    constexpr int hexadecimal = 16;
    const QString digits = QString::number(number, hexadecimal);
    if (kind == Kind::Mac && isAddress(digitsOf(form))) {
        const QString address = QLatin1String("02") + digits.rightJustified(10, u'0');
        return form.contains(u':')   ? pairs(address, u':')
               : form.contains(u'-') ? pairs(address, u'-')
                                     : address;
    }
    constexpr qsizetype lengthOfUuid = 36;
    if (kind == Kind::Uuid && form.size() == lengthOfUuid)
        return QLatin1String("00000000-0000-4000-8000-") + digits.rightJustified(12, u'0');
    return QLatin1String(wordFor(kind)) + u'-' + QString::number(number);
}

QString PrivateValues::token(const QString &value) const
{
    return tokens_.value(normalized(value));
}

QString PrivateValues::token(const RegistryValue &number) const
{
    return numberTokens_.value(number.numberBits());
}
