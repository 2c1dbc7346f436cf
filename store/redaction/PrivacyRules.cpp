// SPDX-License-Identifier: Apache-2.0
#include "store/redaction/PrivacyRules.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace {
using Kind = PrivacyRules::Kind;
using DataKind = PrivacyRules::DataKind;

QString textOf(const QJsonValue &row, const char *key)
{
    return row[QLatin1String(key)].toString();
}

template<class Enumerator, std::size_t Count>
Enumerator named(const std::pair<const char *, Enumerator> (&names)[Count], const QString &name)
{
    for (const auto &[text, value] : names) {
        if (name == QLatin1String(text))
            return value;
    }
    qFatal("privacy/rules.json: unknown %s", qUtf8Printable(name));
}

Kind kindOf(const QJsonValue &row)
{
    static constexpr std::pair<const char *, Kind> names[] = {
        {"serial", Kind::Serial}, {"uuid", Kind::Uuid},   {"wwn", Kind::Wwn},  {"mac", Kind::Mac},
        {"ip", Kind::Ip},         {"asset", Kind::Asset}, {"host", Kind::Host}};
    return named(names, textOf(row, "kind"));
}

DataKind dataKindOf(const QJsonValue &row)
{
    static constexpr std::pair<const char *, DataKind> names[] = {
        {"edid", DataKind::Edid}, {"mac", DataKind::Mac}, {"blank", DataKind::Blank}};
    return named(names, textOf(row, "as"));
}

QRegularExpression pattern(const QString &text)
{
    return QRegularExpression(text, QRegularExpression::CaseInsensitiveOption);
}

QRegularExpression wholePattern(const QString &text)
{
    return pattern(QRegularExpression::anchoredPattern(text));
}

QSet<QString> textsIn(const QJsonValue &list)
{
    QSet<QString> texts;
    const QJsonArray array = list.toArray();
    for (const QJsonValueConstRef text : array)
        texts.insert(text.toString());
    return texts;
}
} // namespace

const PrivacyRules &PrivacyRules::instance()
{
    static const PrivacyRules rules = [] {
        QFile file(QStringLiteral(":/privacy/rules.json"));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("privacy/rules.json is missing from the program's resources");
        return PrivacyRules(QJsonDocument::fromJson(file.readAll()).object());
    }();
    return rules;
}

PrivacyRules::PrivacyRules(const QJsonObject &rules)
    : keys_(keyRules(rules[QLatin1String("keys")].toArray()))
    , publicKeys_(keyRules(rules[QLatin1String("public")][QLatin1String("keys")].toArray()))
    , publicValues_(textsIn(rules[QLatin1String("public")][QLatin1String("values")]))
    , commonHosts_(textsIn(rules[QLatin1String("commonHosts")]))
{
    addTextRules(rules[QLatin1String("texts")].toArray());
    addDataRules(rules[QLatin1String("data")].toArray());
}

// A rule of public keys needs no kind.
std::vector<PrivacyRules::KeyRule> PrivacyRules::keyRules(const QJsonArray &rows)
{
    std::vector<KeyRule> rules;
    for (const QJsonValueConstRef row : rows) {
        const bool hasKind = row.toObject().contains(QLatin1String("kind"));
        rules.push_back({wholePattern(textOf(row, "match")), textOf(row, "subsystem"),
                         hasKind ? kindOf(row) : Kind::Serial});
    }
    return rules;
}

void PrivacyRules::addTextRules(const QJsonArray &rows)
{
    for (const QJsonValueConstRef row : rows) {
        const QString except = textOf(row, "exceptKeys");
        texts_.push_back({pattern(textOf(row, "match")),
                          except.isEmpty() ? QRegularExpression() : wholePattern(except),
                          textOf(row, "contains"), kindOf(row)});
    }
}

void PrivacyRules::addDataRules(const QJsonArray &rows)
{
    for (const QJsonValueConstRef row : rows)
        data_.push_back({wholePattern(textOf(row, "match")), dataKindOf(row)});
}

const PrivacyRules::KeyRule *PrivacyRules::ruleOf(const std::vector<KeyRule> &rules,
                                                  const QString &key, const QString &subsystem)
{
    const auto found = std::find_if(rules.begin(), rules.end(), [&](const KeyRule &rule) {
        return (rule.subsystem.isNull() || rule.subsystem == subsystem) &&
               rule.match.match(key).hasMatch();
    });
    return found == rules.end() ? nullptr : &*found;
}

std::optional<Kind> PrivacyRules::kindOfKey(const QString &key, const QString &subsystem) const
{
    const KeyRule *const rule = ruleOf(keys_, key, subsystem);
    return rule ? std::optional(rule->kind) : std::nullopt;
}

bool PrivacyRules::isPublicKey(const QString &key, const QString &subsystem) const
{
    return ruleOf(publicKeys_, key, subsystem) != nullptr;
}

std::optional<DataKind> PrivacyRules::kindOfData(const QString &key) const
{
    for (const DataRule &rule : data_) {
        if (rule.match.match(key).hasMatch())
            return rule.kind;
    }
    return std::nullopt;
}

bool PrivacyRules::isPublicValue(const QString &value) const
{
    static const QString saysNothing = QStringLiteral("0fFxX.-: \"");
    return std::all_of(value.begin(), value.end(),
                       [](QChar c) { return saysNothing.contains(c); }) ||
           publicValues_.contains(value.toLower());
}

bool PrivacyRules::isCommonHost(const QString &name) const
{
    return commonHosts_.contains(name.toLower());
}

void PrivacyRules::findInText(const QString &text, const QString &key, const Found &found) const
{
    for (const TextRule &rule : texts_) {
        if (!text.contains(rule.contains, Qt::CaseInsensitive))
            continue;
        if (!rule.exceptKeys.pattern().isEmpty() && rule.exceptKeys.match(key).hasMatch())
            continue;
        for (auto matches = rule.match.globalMatch(text); matches.hasNext();) {
            const QRegularExpressionMatch match = matches.next();
            found(rule.kind, match.captured(match.lastCapturedIndex()));
        }
    }
}
