// SPDX-License-Identifier: Apache-2.0
#include "model/linux/AttributePolicy.h"

#include "tests/support/QtPrinters.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace {
using Rule = AttributePolicy::Rule;
using Folder = AttributePolicy::Folder;

QByteArray text(const QJsonObject &of, const char *key)
{
    return of.value(QLatin1String(key)).toString().toUtf8();
}

Folder folderOf(const QJsonObject &attribute)
{
    const QByteArray name = text(attribute, "in");
    return name == "bus"        ? Folder::Bus
           : name == "class"    ? Folder::Class
           : name == "driver"   ? Folder::Driver
           : name == "module"   ? Folder::Module
           : name == "firmware" ? Folder::Firmware
                                : Folder::Device;
}

// tests/tools/test_policy.py checks the recorder against the same list.
TEST(AttributePolicy, DecidesAsTheListOfCasesSays)
{
    QFile file(QStringLiteral(VANDREL_SOURCE_DIR "/tests/policy-cases.json"));
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QJsonArray cases = QJsonDocument::fromJson(file.readAll()).array();
    ASSERT_GT(cases.size(), 100);
    for (const auto &item : cases) {
        const QJsonObject its = item.toObject();
        const AttributePolicy policy({.folder = folderOf(its),
                                      .subsystem = text(its, "subsystem"),
                                      .driver = text(its, "driver"),
                                      .path = SysfsPath(text(its, "path")),
                                      .isInterfaceDown = its.value(u"down").toBool(),
                                      .isSuspended = its.value(u"suspended").toBool()});
        const QByteArray expected = text(its, "rule");
        const Rule rule = expected == "always"  ? Rule::Always
                          : expected == "never" ? Rule::Never
                                                : Rule::OnRequest;
        const QByteArray name = text(its, "name");
        const QByteArray directory = text(its, "directory");
        EXPECT_EQ(policy.rule(directory, name), rule) << QJsonDocument(its).toJson().toStdString();
        // A write-only attribute needs no reason.
        if (rule != Rule::Never) {
            EXPECT_EQ(policy.reason(directory, name).isNull(), rule == Rule::Always)
                << name.toStdString();
        }
    }
}

TEST(AttributePolicy, EntersNoFolderOfADebuggingFileSystemButAnyOfTheFirmware)
{
    EXPECT_TRUE(AttributePolicy::skipsDirectory(Folder::Device, "unit_descriptor"));
    EXPECT_TRUE(AttributePolicy::skipsDirectory(Folder::Module, "tracepoints"));
    EXPECT_FALSE(AttributePolicy::skipsDirectory(Folder::Device, "queue"));
    EXPECT_FALSE(AttributePolicy::skipsDirectory(Folder::Firmware, "debug"));
}
} // namespace
