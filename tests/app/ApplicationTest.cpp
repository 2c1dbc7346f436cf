#include "app/TavApplicationDelegate.h"

#include "app/CommandLine.h"
#include "app/Startup.h"
#include "explorer/TavWindowController.h"
#include "model/RegistryService.h"
#include "platform/PreferencesStore.h"
#include "tests/support/QtPrinters.h"

#include <QImage>
#include <QJsonArray>
#include <QMainWindow>
#include <QScreen>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QWindow>
#include <gmock/gmock.h>

namespace {
class ApplicationTest : public testing::Test
{
protected:
    ApplicationTest()
    {
        PreferencesStore::setFolder(folder_.path());
        Startup::setUpApplication(Theme::Light);
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
        return delegate_->start(line, &error_);
    }

    QTemporaryDir folder_;
    QString error_;
    std::unique_ptr<TavApplicationDelegate> delegate_;
};
} // namespace

TEST_F(ApplicationTest, OpensWhereItIsAskedTo)
{
    ASSERT_TRUE(start("")) << error_.toStdString();
    EXPECT_EQ(delegate_->mainWindowController()->registryPlane(), QStringLiteral("DxService"));
    ASSERT_TRUE(start("--plane DxUsb")) << error_.toStdString();
    EXPECT_EQ(delegate_->mainWindowController()->registryPlane(), QStringLiteral("DxUsb"));
    const QString path = QStringLiteral("DxBus:/usb");
    ASSERT_TRUE(start("--plane DxUsb --select DxBus:/usb")) << error_.toStdString();
    EXPECT_EQ(delegate_->mainWindowController()->registryPathForSelectedEntry(), path);
    EXPECT_TRUE(delegate_->mainWindowController()->window()->isVisible());
}

TEST_F(ApplicationTest, OpensInTheSizeThatWasGivenLast)
{
    PreferencesStore &preferences = PreferencesStore::standard();
    const QString key = QStringLiteral("TavExplorerWindowSize");
    const QSize screen = QGuiApplication::primaryScreen()->availableSize();
    const auto sizeAtStart = [&] {
        EXPECT_TRUE(start(""));
        return delegate_->mainWindowController()->window()->size();
    };
    const QSize usual = sizeAtStart();
    delegate_->mainWindowController()->window()->windowHandle()->resize(640, 480);
    EXPECT_TRUE(QTest::qWaitFor([&] { return preferences.list(key) == QJsonArray{640, 480}; }));
    EXPECT_EQ(sizeAtStart(), QSize(640, 480));
    preferences.setValue(key, QJsonArray{100'000, 600});
    EXPECT_EQ(sizeAtStart(), QSize(screen.width(), 600));
    for (const QJsonValue &damaged : {QJsonValue(QJsonArray{-5, 600}), QJsonValue(7)}) {
        preferences.setValue(key, damaged);
        EXPECT_EQ(sizeAtStart(), usual);
    }
}

TEST_F(ApplicationTest, TellsWhatIsNotThere)
{
    EXPECT_FALSE(start("--plane DxNowhere"));
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("DxNowhere"));
    EXPECT_FALSE(start("--select DxBus:/nothing"));
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr("DxBus:/nothing"));
    CommandLine line;
    line.sysfsRoot = folder_.path();
    EXPECT_EQ(TavApplicationDelegate::openRegistry(line, &error_), nullptr);
    EXPECT_THAT(error_.toStdString(), testing::HasSubstr(folder_.path().toStdString()));
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
