// SPDX-License-Identifier: Apache-2.0
#include "app/TavApplicationDelegate.h"

#include "app/CommandLine.h"
#include "app/Startup.h"
#include "explorer/window/TavWindowController.h"
#include "model/RegistryService.h"
#include "platform/desktop/Theme.h"
#include "platform/host/DesktopServices.h"
#include "platform/preferences/PreferencesStore.h"
#include "tests/support/FakeLiveService.h"
#include "tests/support/QtPrinters.h"

#include "tests/support/SmallStore.h"

#include <QImage>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <gmock/gmock.h>

namespace {
class ApplicationTest : public testing::Test
{
protected:
    ApplicationTest()
    {
        PreferencesStore::setFolder(folder_.path());
        applyTheme(Theme::Light);
        Startup::setUpApplication();
        DesktopServices::instance().noteRecentFile = nullptr;
    }
    bool start(const char *options)
    {
        const QString tree = QStringLiteral(VANDREL_SOURCE_DIR "/tests/fixtures/synthetic/sys");
        const CommandLine line = CommandLine::parse(QStringLiteral("vandrel --sysfs %1 %2")
                                                        .arg(tree, QString::fromUtf8(options))
                                                        .split(u' ', Qt::SkipEmptyParts));
        delegate_.reset();
        delegate_ = std::make_unique<TavApplicationDelegate>(
            TavApplicationDelegate::openRegistry(line, &error_));
        const StartResult result = delegate_->start(line);
        error_ = result.message;
        return result.isRunning();
    }

    QTemporaryDir folder_;
    QString error_;
    std::unique_ptr<TavApplicationDelegate> delegate_;
};
} // namespace

TEST_F(ApplicationTest, OpensTheRequestedPlaceOrReportsWhatIsMissing)
{
    const auto plane = [this](const char *options) {
        EXPECT_TRUE(start(options)) << error_.toStdString();
        return delegate_->mainWindowController()->registryPlane();
    };
    EXPECT_EQ(plane(""), QStringLiteral("DxService"));
    EXPECT_EQ(plane("--plane DxUsb"), QStringLiteral("DxUsb"));
    EXPECT_EQ(plane("--plane DxUsb --select DxBus:/usb"), QStringLiteral("DxBus"));
    EXPECT_EQ(delegate_->mainWindowController()->registryPathForSelectedEntry(),
              QStringLiteral("DxBus:/usb"));
    EXPECT_TRUE(delegate_->mainWindowController()->window()->isVisible());

    EXPECT_FALSE(start("--plane DxNowhere"));
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("DxNowhere"));
    EXPECT_FALSE(start("--select DxBus:/nothing"));
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("DxBus:/nothing"));
    CommandLine line;
    line.sysfsRoot = folder_.path();
    EXPECT_EQ(TavApplicationDelegate::openRegistry(line, &error_), nullptr);
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr(folder_.path().toStdString()));
}

TEST_F(ApplicationTest, ComparesTheGivenSnapshots)
{
    const QString one = folder_.filePath(QStringLiteral("one.vandrel"));
    QFile file(one);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(SmallStore::current().bytes());
    file.close();
    const QString other = folder_.filePath(QStringLiteral("other.vandrel"));
    ASSERT_TRUE(QFile::copy(one, other));
    ASSERT_TRUE(start(qPrintable(QStringLiteral("--compare %1 %2").arg(one, other))))
        << error_.toStdString();
    ASSERT_EQ(delegate_->documents().documents().size(), 1U);
    EXPECT_NE(delegate_->mainWindowController()->comparison(), nullptr);
    EXPECT_FALSE(start(qPrintable(QStringLiteral("--compare %1 /nowhere").arg(one))));
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("/nowhere"));
}

TEST_F(ApplicationTest, QuitsSilentlyWhenItsFirstReadingIsCancelled)
{
    const auto startCancelled = [this](const CommandLine &line) {
        auto service = std::make_unique<FakeLiveService>();
        service->cancelNextPreparation();
        delegate_ = std::make_unique<TavApplicationDelegate>(std::move(service));
        const StartResult result = delegate_->start(line);
        EXPECT_FALSE(result.isRunning());
        EXPECT_EQ(result.status == StartResult::Status::Cancelled, result.message.isNull());
        error_ = result.message;
        EXPECT_EQ(delegate_->mainWindowController(), nullptr);
        delegate_.reset();
    };
    startCancelled({});
    EXPECT_TRUE(error_.isNull()) << error_.toStdString();

    CommandLine line;
    line.screenshotFile = folder_.filePath(QStringLiteral("window.png"));
    startCancelled(line);
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("cancelled")) << "the picture is missing";
    line = {};
    line.files = QStringList{folder_.filePath(QStringLiteral("missing.vandrel"))};
    startCancelled(line);
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("missing.vandrel"));
}

TEST_F(ApplicationTest, SavesAPicture)
{
    const QString file = folder_.filePath(QStringLiteral("window.png"));
    ASSERT_TRUE(start(("--screenshot " + file.toStdString()).c_str())) << error_.toStdString();
    QSignalSpy saved(delegate_.get(), &TavApplicationDelegate::pictureSaved);
    ASSERT_TRUE(saved.wait());
    EXPECT_EQ(QImage(file).size(), delegate_->mainWindowController()->window()->size());

    ASSERT_TRUE(start("--screenshot /nowhere/window.png"));
    QSignalSpy failed(delegate_.get(), &TavApplicationDelegate::pictureFailed);
    ASSERT_TRUE(failed.wait());
    EXPECT_THAT(failed.front().front().toString().toStdString(),
                testing::HasSubstr("/nowhere/window.png"));
}
