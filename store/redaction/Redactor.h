// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "store/redaction/PrivateValues.h"

// Replaces what should not be shared. It first learns from everything that is to be written, so
// that a value is found wherever it occurs, and then replaces.
class Redactor
{
public:
    void learnHost(const QString &name) { values_.addHost(name); }
    void learnName(const QString &name); // of an entry
    // A value with its key, at any depth, in the properties of a device of the subsystem.
    void learn(const QString &key, const QString &subsystem, const RegistryValue &value);
    void finishLearning() { values_.assignTokens(); }

    QString host(const QString &name) const;
    QString text(const QString &text) const { return values_.replacer().apply(text); }
    RegistryValue value(const QString &key, const QString &subsystem,
                        const RegistryValue &value) const;

    static QString subsystemOf(const RegistryValue &link); // the property "subsystem"
    // The key that says what a member of a dictionary is.
    static QString keyOfMember(const QString &keyOfDictionary, const QString &name);

private:
    struct Role // of a key
    {
        std::optional<PrivacyRules::Kind> kind;
        std::optional<PrivacyRules::DataKind> data;
        bool isPublic;
    };

    Role role(const QString &key, const QString &subsystem) const;
    void learnFromText(const QString &text, const QString &key, bool isPublic);
    void learnFromData(const Role &role, const QByteArray &bytes);
    RegistryValue collection(const QString &key, const QString &subsystem,
                             const RegistryValue &value) const;
    RegistryValue number(const Role &role, const RegistryValue &value) const;
    QByteArray data(const Role &role, const QByteArray &bytes) const;
    QByteArray data(const Role &role, const QByteArray &bytes, quint32 variant) const;
    QByteArray withoutPrivateParts(QByteArray bytes, quint32 variant) const;
    quint32 variantOf(const QByteArray &cleared, const QByteArray &original) const;

    PrivateValues values_;
    mutable QHash<QString, QHash<QString, Role>> roles_; // by subsystem and key
    // Originals that are the same once their private parts are cleared, and their numbers from 0.
    mutable QHash<QByteArray, QHash<QByteArray, quint32>> variants_;
};
