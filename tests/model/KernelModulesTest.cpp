// SPDX-License-Identifier: Apache-2.0
#include "model/linux/KernelModules.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <gtest/gtest.h>
#include <sys/utsname.h>

// A folder of modules, indexed by depmod itself.
class KernelModulesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        const QString system = QStringLiteral("/usr/sbin");
        depmod_ = QStandardPaths::findExecutable(QStringLiteral("depmod"), {system});
        compiler_ = QStandardPaths::findExecutable(QStringLiteral("cc"));
        if (depmod_.isEmpty() || compiler_.isEmpty())
            GTEST_SKIP() << "depmod or cc is not installed";
        ASSERT_TRUE(QDir(folder()).mkpath(QStringLiteral("kernel")));
    }
    QString folder() const { return base_.filePath(QStringLiteral("lib/modules/1.0")); }
    void write(const char *name, const QByteArray &content) const
    {
        QFile file(folder() + u'/' + QLatin1String(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    static bool run(const QString &program, const QStringList &arguments)
    {
        return QProcess::execute(program, arguments) == 0;
    }
    void addModule(const char *name, const char *alias) const
    {
        write("module.c",
              QByteArray("__attribute__((section(\".modinfo\"), used)) static const char "
                         "a[] = \"alias=") +
                  alias + "\";");
        ASSERT_TRUE(
            run(compiler_,
                {QStringLiteral("-c"), folder() + QStringLiteral("/module.c"), QStringLiteral("-o"),
                 folder() + QStringLiteral("/kernel/%1.ko").arg(QLatin1String(name))}));
    }
    void index() const
    {
        write("modules.order", "");
        write("modules.builtin", "kernel/fixed.ko\n");
        write("modules.builtin.modinfo",
              QByteArray("fixed.alias=pci:v00001234d00000009*\0fixed.file=kernel/fixed\0", 60));
        ASSERT_TRUE(run(depmod_, {QStringLiteral("-b"), base_.path(), QStringLiteral("1.0")}));
    }

    QTemporaryDir base_;
    QString depmod_;
    QString compiler_;
};

TEST_F(KernelModulesTest, FindsWhatModprobeWouldTake)
{
    addModule("card", "pci:v00001234d00000001*");
    EXPECT_FALSE(KernelModules(folder()).hasIndexes());
    index();
    const KernelModules modules(folder());
    ASSERT_TRUE(modules.hasIndexes());
    const auto found = modules.modulesFor(QStringLiteral("pci:v00001234d00000001sv0bc02"));
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].name, QStringLiteral("card"));
    EXPECT_FALSE(found[0].isBuiltIn);
    EXPECT_FALSE(found[0].isBlocked);
    const auto fixed = modules.modulesFor(QStringLiteral("pci:v00001234d00000009sv0bc02"));
    ASSERT_EQ(fixed.size(), 1U);
    EXPECT_TRUE(fixed[0].isBuiltIn);
    EXPECT_TRUE(modules.modulesFor(QStringLiteral("pci:v00004321d00000001sv0bc02")).empty());
    EXPECT_TRUE(modules.modulesFor({}).empty());
    EXPECT_TRUE(modules.modulesFor(QString(5000, u'*')).empty());
}
