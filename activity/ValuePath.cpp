// SPDX-License-Identifier: Apache-2.0
#include "activity/ValuePath.h"

#include "model/TavRegistryProperty.h"

#include <QRegularExpression>

namespace {
using Type = RegistryValue::Type;

RegistryValue memberOf(std::span<const RegistryValue::Member> members, const QString &key)
{
    for (const auto &member : members) {
        if (QStringView(member.key.data(), member.key.size()) == key)
            return member.value;
    }
    return {};
}

// Recursive: no deeper than a tree of attributes.
void addNumbers(const RegistryValue &value, const QString &path, QStringList &paths)
{
    if (value.type() == Type::Number)
        paths.append(path);
    for (const auto &[key, member] : value.members())
        addNumbers(member, path.isEmpty() ? key.toOwner() : path + u'/' + key.toOwner(), paths);
    qsizetype place = 0;
    for (const RegistryValue &element : value.elements())
        addNumbers(element, QStringLiteral("%1[%2]").arg(path).arg(place++), paths);
}

RegistryValue elementOf(std::span<const RegistryValue> elements, const QString &place)
{
    bool isNumber = false;
    const qulonglong index = place.toULongLong(&isNumber);
    return isNumber && index < elements.size() ? elements[index] : RegistryValue();
}
} // namespace

ValuePath ValuePath::of(const TavRegistryProperty &node)
{
    QStringList steps; // the last first
    for (const auto *at = &node; at->parent(); at = at->parent()) {
        if (at->parent()->valueType() != Type::Array) {
            steps.append(at->name());
            continue;
        }
        const auto siblings = at->parent()->children();
        const auto place = std::find(siblings.begin(), siblings.end(), at) - siblings.begin();
        steps.append(QStringLiteral("[%1]").arg(place));
    }
    std::reverse(steps.begin(), steps.end());
    return parse(steps.join(u'/').replace(QLatin1String("/["), QLatin1String("[")));
}

ValuePath ValuePath::parse(const QString &text)
{
    static const QRegularExpression place(QStringLiteral("\\[(\\d+)\\]"));
    ValuePath path;
    path.text_ = text;
    path.steps_ = QString(text).replace(place, QStringLiteral("/\\1")).split(u'/');
    return path;
}

QStringList ValuePath::ofNumbers(const RegistryValue &table)
{
    QStringList paths;
    addNumbers(table, {}, paths);
    return paths;
}

RegistryValue ValuePath::in(std::span<const RegistryValue::Member> table) const
{
    RegistryValue value = memberOf(table, steps_.value(0));
    for (qsizetype i = 1; i < steps_.size(); ++i) {
        const bool isList = value.type() == Type::Array;
        value =
            isList ? elementOf(value.elements(), steps_[i]) : memberOf(value.members(), steps_[i]);
    }
    return value;
}
