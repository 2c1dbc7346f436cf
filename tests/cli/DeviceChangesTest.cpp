// SPDX-License-Identifier: Apache-2.0
#include "cli/DeviceChanges.h"

#include <gtest/gtest.h>

namespace {
using Action = DeviceEvent::Action;
using Device = DevicePicture::Device;

DevicePicture picture(std::initializer_list<Device> devices)
{
    DevicePicture picture;
    picture.addSubsystem("net");
    for (const Device &device : devices)
        picture.add(QStringLiteral("/sys/devices/") + device.path, device);
    return picture;
}

Device device(quint64 id, const char *path, const char *driver = nullptr)
{
    return {id, QString::fromLatin1(path), QString::fromLatin1(driver), {}, true};
}

DeviceChanges::Message message(Action action, const char *path, const char *subsystem = "net")
{
    return {{action, SysfsPath(QByteArray("devices/") + path), subsystem},
            QDateTime::currentDateTimeUtc()};
}

// "+a -b *c", with ":driver" for bindings
std::string text(const std::vector<DeviceChange> &changes)
{
    std::string text;
    for (const DeviceChange &change : changes) {
        const char *const marks = "+-><=*"; // in the order of the actions
        text += (text.empty() ? "" : " ") + std::string(1, marks[static_cast<int>(change.action)]) +
                change.path().toStdString();
        if (change.action == Action::Bind || change.action == Action::Unbind)
            text += ':' + change.driver().toStdString();
    }
    return text;
}

TEST(DeviceChanges, FollowTheMessagesOfTheKernel)
{
    DeviceChanges changes(picture({device(1, "a"), device(2, "b", "drv")}));
    EXPECT_EQ(text(changes.after({message(Action::Add, "c"), message(Action::Remove, "a"),
                                  message(Action::Unbind, "b")},
                                 picture({device(2, "b"), device(3, "c")}))),
              "+c -a <b:drv");
    // What came and went, of a subsystem of the registry and of another.
    EXPECT_EQ(text(changes.after({message(Action::Add, "d"), message(Action::Remove, "d"),
                                  message(Action::Add, "c/queues/rx-0", "queues")},
                                 picture({device(2, "b"), device(3, "c")}))),
              "+/sys/devices/d -/sys/devices/d");
    EXPECT_EQ(text(changes.after({message(Action::Bind, "b")},
                                 picture({device(2, "b", "drv"), device(3, "c")}))),
              ">b:drv");
}

TEST(DeviceChanges, KnowARenamedDeviceByItsID)
{
    DeviceChanges changes(picture({device(1, "old"), device(2, "gone")}));
    const auto renamed =
        changes.after({message(Action::Change, "new")}, picture({device(1, "new")}));
    EXPECT_EQ(text(renamed), "*new -gone"); // its message is still to come
    EXPECT_EQ(renamed.front().before->path, QStringLiteral("old"));
    EXPECT_EQ(text(changes.after({message(Action::Remove, "gone")}, picture({device(1, "new")}))),
              "");
    EXPECT_EQ(text(changes.after({message(Action::Remove, "gone")}, picture({device(1, "new")}))),
              "-/sys/devices/gone"); // another one
}

TEST(DeviceChanges, AfterALossComparePictures)
{
    DeviceChanges changes(
        picture({device(1, "a"), device(2, "b"), device(3, "c", "drv"), device(4, "d")}));
    const auto found = changes.afterLoss(
        QDateTime::currentDateTimeUtc(),
        picture({device(2, "b", "drv"), device(3, "c"), device(4, "d2"), device(5, "a")}));
    const std::string all = text(found);
    EXPECT_EQ(found.size(), 5U) << all;
    for (const char *const change : {"-a", ">b:drv", "<c:drv", "*d2", "+a"})
        EXPECT_NE(all.find(change), std::string::npos) << all;
}
} // namespace
