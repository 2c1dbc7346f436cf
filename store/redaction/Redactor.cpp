// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/Redactor.h"

#include "store/redaction/EdidRedaction.h"

#include <climits>

namespace {
using Type = RegistryValue::Type;
using DataKind = PrivacyRules::DataKind;
using Source = PrivateValues::Source;

constexpr qsizetype addressSize = 6;

bool isSame(const QString &a, const QString &b)
{
    return a.constData() == b.constData() && a.size() == b.size();
}

QString addressText(const QByteArray &bytes)
{
    return QString::fromLatin1(bytes.toHex(':'));
}

QString textIn(const QByteArray &bytes)
{
    const qsizetype end = bytes.indexOf('\0');
    return QString::fromUtf8(end < 0 ? bytes : bytes.left(end)).trimmed();
}
} // namespace

QString Redactor::subsystemOf(const RegistryValue &link)
{
    const QStringView path = link.stringView();
    return path.sliced(path.lastIndexOf(u'/') + 1).toString();
}

// The reasons why attributes were not read are listed by the attributes' names.
QString Redactor::keyOfMember(const QString &keyOfDictionary, const QString &name)
{
    static const QString unread = QStringLiteral("DxUnreadAttributes");
    return keyOfDictionary == unread ? unread : name;
}

void Redactor::learnName(const QString &name)
{
    values_.addName(name);
    learnFromText(name, {}, false);
}

Redactor::Role Redactor::role(const QString &key, const QString &subsystem) const
{
    QHash<QString, Role> &roles = roles_[subsystem];
    const auto known = roles.constFind(key);
    if (known != roles.constEnd())
        return *known;
    const PrivacyRules &rules = PrivacyRules::instance();
    const bool isPublic = rules.isPublicKey(key, subsystem);
    return *roles.insert(key, {isPublic ? std::nullopt : rules.kindOfKey(key, subsystem),
                               rules.kindOfData(key), isPublic});
}

void Redactor::learn(const QString &key, const QString &subsystem, const RegistryValue &value)
{
    const Role role = this->role(key, subsystem);
    switch (value.type()) {
    case Type::Dictionary:
        for (const auto &[name, member] : value.members()) {
            const QString text = name.toOwner();
            if (!roles_[subsystem].contains(text))
                learnFromText(text, {}, false);
            learn(keyOfMember(key, text), subsystem, member);
        }
        break;
    case Type::Array:
    case Type::Set:
        for (const RegistryValue &element : value.elements())
            learn(key, subsystem, element);
        break;
    case Type::String:
        if (role.kind)
            values_.add(*role.kind, value.toString(), Source::Key);
        learnFromText(value.toString(), key, role.isPublic);
        break;
    case Type::Number:
        if (role.kind)
            values_.addNumber(*role.kind, value);
        break;
    case Type::Data:
        learnFromData(role, value.toData());
        break;
    default:
        break;
    }
}

void Redactor::learnFromText(const QString &text, const QString &key, bool isPublic)
{
    PrivacyRules::instance().findInText(text, key,
                                        [&](PrivacyRules::Kind kind, const QString &found) {
                                            if (isPublic)
                                                values_.addPublic(found);
                                            else
                                                values_.add(kind, found, Source::Text);
                                        });
}

void Redactor::learnFromData(const Role &role, const QByteArray &bytes)
{
    if (role.data == DataKind::Edid) {
        for (const QString &serial : EdidRedaction::serialTexts(bytes))
            values_.add(PrivacyRules::Kind::Serial, serial, Source::Key);
    } else if (role.data == DataKind::Mac && bytes.size() == addressSize) {
        values_.add(PrivacyRules::Kind::Mac, addressText(bytes), Source::Key);
    } else if (role.kind) {
        values_.add(*role.kind, textIn(bytes), Source::Key);
    }
}

// A common name is no private part of other texts, but is still the host's.
QString Redactor::host(const QString &name) const
{
    const QString token = values_.token(name);
    return token.isNull() ? text(name) : token;
}

RegistryValue Redactor::value(const QString &key, const QString &subsystem,
                              const RegistryValue &value) const
{
    const Role role = this->role(key, subsystem);
    switch (value.type()) {
    case Type::Dictionary:
    case Type::Array:
    case Type::Set:
        return collection(key, subsystem, value);
    case Type::String: {
        const QString own = value.toString();
        if (role.data == DataKind::Blank) {
            const quint32 variant = variantOf({}, own.toUtf8());
            return RegistryValue::string(variant == 0 ? QString() : QString::number(variant));
        }
        const QString token = role.kind ? values_.token(own) : QString();
        const QString shown = token.isNull() ? text(own) : token;
        return isSame(shown, own) ? value : RegistryValue::string(shown);
    }
    case Type::Number:
        return number(role, value);
    case Type::Data: {
        const QByteArray own = value.toData();
        const QByteArray shown = data(role, own);
        return shown == own ? value : RegistryValue::data(shown);
    }
    default:
        return value;
    }
}

RegistryValue Redactor::collection(const QString &key, const QString &subsystem,
                                   const RegistryValue &value) const
{
    if (value.type() == Type::Dictionary) {
        RegistryValue::Members members;
        members.reserve(static_cast<std::size_t>(value.count()));
        for (const auto &[name, member] : value.members()) {
            const QString own = name.toOwner();
            const QString shown = text(own);
            members.push_back({isSame(shown, own) ? name : CompactString(shown),
                               this->value(keyOfMember(key, own), subsystem, member)});
        }
        return RegistryValue::dictionary(std::move(members));
    }
    RegistryValue::Elements elements;
    elements.reserve(static_cast<std::size_t>(value.count()));
    for (const RegistryValue &element : value.elements())
        elements.push_back(this->value(key, subsystem, element));
    return value.type() == Type::Set ? RegistryValue::set(std::move(elements))
                                     : RegistryValue::array(std::move(elements));
}

RegistryValue Redactor::number(const Role &role, const RegistryValue &value) const
{
    QString token = values_.token(value);
    if (token.isNull() && role.kind)
        token = values_.token(QString::number(value.numberBits()));
    return token.isNull() ? value : RegistryValue::string(token);
}

// Different data stays different, so that a comparison finds the same differences.
QByteArray Redactor::data(const Role &role, const QByteArray &bytes) const
{
    const QByteArray cleared = data(role, bytes, 0);
    const quint32 variant = cleared == bytes ? 0 : variantOf(cleared, bytes);
    return variant == 0 ? cleared : data(role, bytes, variant);
}

quint32 Redactor::variantOf(const QByteArray &cleared, const QByteArray &original) const
{
    QHash<QByteArray, quint32> &originals = variants_[cleared];
    const auto known = originals.constFind(original);
    if (known != originals.constEnd())
        return *known;
    return *originals.insert(original, static_cast<quint32>(originals.size()));
}

QByteArray Redactor::data(const Role &role, const QByteArray &bytes, quint32 variant) const
{
    if (role.data == DataKind::Blank) {
        QByteArray blank(bytes.size(), '\0');
        for (qsizetype i = 0; i < std::min(blank.size(), qsizetype(sizeof variant)); ++i)
            blank[i] = static_cast<char>(variant >> CHAR_BIT * i);
        return blank;
    }
    if (role.data == DataKind::Edid)
        return withoutPrivateParts(EdidRedaction::cleaned(bytes, variant), 0);
    if (role.data == DataKind::Mac && bytes.size() == addressSize) {
        const QString token = values_.token(addressText(bytes));
        return token.isNull() ? bytes : QByteArray::fromHex(token.toLatin1());
    }
    const QString token = role.kind ? values_.token(textIn(bytes)) : QString();
    return token.isNull() ? withoutPrivateParts(bytes, variant) : token.toLatin1() + '\0';
}

// Keeps the length, since places in the data may matter.
QByteArray Redactor::withoutPrivateParts(QByteArray bytes, quint32 variant) const
{
    constexpr quint32 letters = 26;
    const char filling = static_cast<char>('A' + (variant + 'X' - 'A') % letters);
    values_.replacer().forEachMatch(QString::fromLatin1(bytes),
                                    [&](qsizetype start, qsizetype length, const QString &) {
                                        std::fill_n(bytes.begin() + start, length, filling);
                                    });
    return bytes;
}
