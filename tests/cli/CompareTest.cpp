// SPDX-License-Identifier: Apache-2.0
#include "tests/support/QtPrinters.h"
#include "tests/support/VirtualInterface.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTemporaryDir>
#include <gtest/gtest.h>

namespace {
using namespace Qt::Literals::StringLiterals;

constexpr int comparingTime = 60'000; // milliseconds

class CompareLiveDevice : public testing::Test
{
protected:
    static QByteArray run(const QString &program, const QStringList &arguments, int exitCode)
    {
        QProcess process;
        process.start(program, arguments);
        EXPECT_TRUE(process.waitForFinished(comparingTime));
        EXPECT_EQ(process.exitCode(), exitCode) << process.readAllStandardError().constData();
        return process.readAllStandardOutput();
    }
    void capture() const { run(program_, {u"capture"_s, file_}, 0); }
    // What differs from the capture: "changed DxService:/virtual/net/name mtu, tx_queue_len"
    QStringList differences() const
    {
        QStringList lines;
        const QByteArray output =
            run(program_, {u"compare"_s, file_, u"--format"_s, u"ndjson"_s}, 1);
        for (const QByteArray &line : output.trimmed().split('\n').mid(1)) {
            const QJsonObject difference = QJsonDocument::fromJson(line).object();
            const QLatin1String side = difference.contains("after"_L1) ? "after"_L1 : "before"_L1;
            QStringList keys;
            for (const auto &property : difference["properties"_L1].toArray())
                keys.append(property["property"_L1].toString());
            lines.append(QStringList{difference["kind"_L1].toString(),
                                     difference[side]["path"_L1].toString(), keys.join(u", "_s)}
                             .join(u' ')
                             .trimmed());
        }
        return lines;
    }

    const QString program_ = QStringLiteral(VANDREL_CLI);
    QTemporaryDir folder_;
    const QString file_ = folder_.filePath(u"before.vandrel"_s);
};

TEST_F(CompareLiveDevice, ComesChangesAndGoes)
{
    capture();
    QString path;
    {
        const VirtualInterface interface;
        if (!interface.exists())
            GTEST_SKIP() << VirtualInterface::missing;
        const QString name = QString::fromLatin1(interface.name());
        path = u"DxService:/virtual/net/"_s + name;
        EXPECT_EQ(differences(), (QStringList{u"added "_s + path, u"added "_s + path + u'p'}));

        capture();
        run(u"ip"_s, {u"link"_s, u"set"_s, name, u"mtu"_s, u"1400"_s, u"txqueuelen"_s, u"512"_s},
            0);
        EXPECT_EQ(differences(), QStringList{u"changed "_s + path + u" mtu, tx_queue_len"_s});
        capture();
    }
    EXPECT_EQ(differences(), (QStringList{u"removed "_s + path, u"removed "_s + path + u'p'}));
}
} // namespace
