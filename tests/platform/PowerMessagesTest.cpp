// SPDX-License-Identifier: Apache-2.0
#include "platform/host/PowerMessages.h"
#include "tests/support/EventLoop.h"
#include "tests/support/PrivateBus.h"

#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

namespace {
const QString service = QStringLiteral("org.freedesktop.login1");
const QString path = QStringLiteral("/org/freedesktop/login1");
const QString manager = QStringLiteral("org.freedesktop.login1.Manager");

// A fake login manager that knows whether sleep is delayed.
class LoginManager : public QDBusVirtualObject
{
public:
    explicit LoginManager(QDBusConnection bus)
        : bus_(std::move(bus))
    {
        bus_.registerVirtualObject(path, this);
    }
    ~LoginManager() override { bus_.unregisterObject(path); }
    bool start() { return bus_.registerService(service); }
    void stop() { bus_.unregisterService(service); }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &connection) override
    {
        if (message.interface() != manager || message.member() != QLatin1String("Inhibit"))
            return false;
        calls.append(message.arguments());
        int ends[2];
        if (refuses || pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
            connection.send(message.createErrorReply(QDBusError::AccessDenied, {}));
            return true;
        }
        const QDBusUnixFileDescriptor inhibitor(ends[1]);
        connection.send(message.createReply(QVariant::fromValue(inhibitor)));
        ::close(ends[1]);
        inhibitor_ = QDBusUnixFileDescriptor(ends[0]);
        ::close(ends[0]);
        return true;
    }
    // Whether the other end of the last inhibitor is open.
    bool isDelayed() const
    {
        char byte;
        return inhibitor_.isValid() && read(inhibitor_.fileDescriptor(), &byte, 1) < 0;
    }
    void prepareForSleep(bool begins)
    {
        QDBusMessage signal =
            QDBusMessage::createSignal(path, manager, QStringLiteral("PrepareForSleep"));
        signal << begins;
        bus_.send(signal);
    }

    QList<QVariantList> calls;
    bool refuses = false;

private:
    QDBusConnection bus_;
    QDBusUnixFileDescriptor inhibitor_;
};

class PowerMessagesTest : public testing::Test
{
protected:
    void SetUp() override
    {
        if (!PrivateBus::isAvailable())
            GTEST_SKIP() << "dbus-daemon is not installed";
        bus_.emplace();
        login_.emplace(bus_->connect("login"));
    }
    void TearDown() override
    {
        login_.reset();
        for (const char *name : {"login", "client", "other"})
            QDBusConnection::disconnectFromBus(QString::fromLatin1(name));
    }
    std::unique_ptr<PowerMessages> makeClient()
    {
        auto power = std::make_unique<PowerMessages>(bus_->connect("client"));
        QObject::connect(power.get(), &PowerMessages::willSleep, power.get(),
                         [this](quint64 request) { requests_.push_back(request); });
        QObject::connect(power.get(), &PowerMessages::hasPoweredOn, power.get(),
                         [this] { ++wakes_; });
        return power;
    }
    bool isDelayed() const { return login_->isDelayed(); }

    std::optional<PrivateBus> bus_;
    std::optional<LoginManager> login_;
    std::vector<quint64> requests_;
    int wakes_ = 0;
};

TEST_F(PowerMessagesTest, DelaysSleepUntilItIsAllowed)
{
    ASSERT_TRUE(login_->start());
    const auto power = makeClient();
    ASSERT_TRUE(waitFor([&] { return isDelayed(); }));
    EXPECT_EQ(login_->calls.constFirst().value(0), QStringLiteral("sleep"));
    EXPECT_EQ(login_->calls.constFirst().value(3), QStringLiteral("delay"));

    LoginManager impostor(bus_->connect("other"));
    impostor.prepareForSleep(true);
    turnEventLoopFor(50);
    EXPECT_TRUE(requests_.empty());
    login_->prepareForSleep(true);
    ASSERT_TRUE(waitFor([&] { return requests_.size() == 1; }));
    EXPECT_TRUE(isDelayed());
    power->allowSleep(requests_[0]);
    EXPECT_TRUE(waitFor([&] { return !isDelayed(); }));

    login_->prepareForSleep(false);
    ASSERT_TRUE(waitFor([&] { return isDelayed(); })); // for the next sleep
    EXPECT_EQ(wakes_, 1);
    login_->prepareForSleep(true);
    ASSERT_TRUE(waitFor([&] { return requests_.size() == 2; }));
    power->allowSleep(requests_[0]); // too late for this one
    turnEventLoopFor(20);
    EXPECT_TRUE(isDelayed());
}

TEST_F(PowerMessagesTest, LoginManagerMayRefuseComeLaterOrNotAtAll)
{
    PowerMessages nowhere(QDBusConnection(QStringLiteral("no such connection")));
    nowhere.allowSleep(1);

    const auto power = makeClient();
    turnEventLoopFor(50);
    EXPECT_TRUE(login_->calls.isEmpty());
    login_->refuses = true;
    ASSERT_TRUE(login_->start());
    ASSERT_TRUE(waitFor([&] { return login_->calls.size() == 1; }));
    login_->prepareForSleep(true); // still reported
    ASSERT_TRUE(waitFor([&] { return requests_.size() == 1; }));
    power->allowSleep(requests_[0]);
    login_->refuses = false;
    login_->stop(); // restarted
    ASSERT_TRUE(login_->start());
    EXPECT_TRUE(waitFor([&] { return isDelayed(); }));
}

} // namespace
