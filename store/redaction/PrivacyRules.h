// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QRegularExpression>
#include <QSet>
#include <optional>

// What identifies a machine or its parts, as resources/privacy/rules.json says. Immutable.
class PrivacyRules
{
public:
    enum class Kind : quint8 { Serial, Uuid, Wwn, Mac, Ip, Asset, Host };
    enum class DataKind : quint8 { Edid, Mac, Blank };

    static const PrivacyRules &instance(); // read on first use

    // A subsystem is empty where there is none.
    std::optional<Kind> kindOfKey(const QString &key, const QString &subsystem) const;
    std::optional<DataKind> kindOfData(const QString &key) const;
    bool isPublicKey(const QString &key, const QString &subsystem) const;
    // Whether the value says nothing of the machine, such as "None" or zeros.
    bool isPublicValue(const QString &value) const;
    bool isCommonHost(const QString &name) const;

    using Found = std::function<void(Kind, const QString &)>;
    void findInText(const QString &text, const QString &key, const Found &found) const;

private:
    struct KeyRule
    {
        QRegularExpression match;
        QString subsystem; // null: any
        Kind kind;
    };
    struct TextRule
    {
        QRegularExpression match;
        QRegularExpression exceptKeys; // empty: none
        QString contains;
        Kind kind;
    };
    struct DataRule
    {
        QRegularExpression match;
        DataKind kind;
    };

    explicit PrivacyRules(const QJsonObject &rules);
    static std::vector<KeyRule> keyRules(const QJsonArray &rows);
    void addTextRules(const QJsonArray &rows);
    void addDataRules(const QJsonArray &rows);
    static const KeyRule *ruleOf(const std::vector<KeyRule> &rules, const QString &key,
                                 const QString &subsystem);

    std::vector<KeyRule> keys_;
    std::vector<KeyRule> publicKeys_;
    std::vector<TextRule> texts_;
    std::vector<DataRule> data_;
    QSet<QString> publicValues_;
    QSet<QString> commonHosts_;
};
