// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "model/RegistryValue.h"
#include "store/redaction/PrivacyRules.h"
#include "store/redaction/TextReplacer.h"

// The private values that were found, and the token for each: the same for all forms of a value,
// such as an address with and without colons.
class PrivateValues
{
public:
    enum class Source : quint8 { Key, Text }; // what says that it is private

    void add(PrivacyRules::Kind kind, const QString &value, Source source);
    void addNumber(PrivacyRules::Kind kind, const RegistryValue &number);
    void addHost(const QString &name);
    void addPublic(const QString &value);
    // A value that only its key makes private stays if it is somebody's name.
    void addName(const QString &name);

    void assignTokens(); // after which nothing may be added

    QString token(const QString &value) const;        // null: it is not private
    QString token(const RegistryValue &number) const; // likewise
    const TextReplacer &replacer() const { return replacer_; }

private:
    using Kind = PrivacyRules::Kind;
    struct Value
    {
        Kind kind;
        Source source;
        QString identity; // the same for all forms
        QStringList forms;
        bool isOnlyItself = false; // it is not replaced inside other texts
    };

    void add(Value value);
    bool isPublic(const Value &value) const;
    void addForm(const Value &value, const QString &form, quint32 number);
    static QString tokenOf(Kind kind, const QString &form, quint32 number);

    std::vector<Value> values_;       // in the order they were found
    QHash<QString, qsizetype> known_; // index of the value, by form
    QSet<QString> public_;
    QSet<QString> names_;
    QHash<QString, QString> tokens_;       // by form
    QHash<quint64, QString> numberTokens_; // by the bits
    TextReplacer replacer_;
};
