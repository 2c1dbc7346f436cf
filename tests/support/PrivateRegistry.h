// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "tests/support/RegistryValues.h"
#include "tests/support/TreeBuilder.h"

#include <string_view>

// Devices with private values of each kind, in all places where they occur.
namespace PrivateRegistry {
// None of these may be in what is passed on.
inline constexpr std::string_view secrets[] = {
    "SN-77812",
    "DISK_4T_Z1Z23456",
    "354172020305000",
    "Ab12:Cd",
    "3e:10:aa",
    "3e10aabbccd0",
    "11:22:33:44:55:66:77:88",
    "5000c500a1b2",
    "7f3c2a10-5b1d",
    "192.168.7.9",
    "fe80::3c10",
    "INV-0042",
    "ada-laptop",
    "MON-99431",
    "3E-10-AA",
};

// A monitor's description whose serial number is a number and a text.
inline QByteArray edid()
{
    QByteArray bytes(128, '\0');
    std::fill_n(bytes.begin() + 1, 6, '\xff');
    bytes.replace(12, 4, QByteArray::fromHex("78563412"));
    bytes.replace(54, 18, QByteArray::fromHex("000000ff00") + "MON-99431\n   ");
    bytes.replace(72, 18, QByteArray::fromHex("000000fc00") + "Wide Screen\n ");
    quint8 sum = 0;
    for (const char byte : bytes)
        sum = static_cast<quint8>(sum + static_cast<quint8>(byte));
    bytes[127] = static_cast<char>(-sum);
    return bytes;
}

inline void plant(FakeRegistryService &service, TreeBuilder &registry)
{
    using namespace values;
    registry.plane("DxService", "Root\n"
                                "  Host\n"
                                "    disk\n"
                                "    eth0\n"
                                "      enx3e10aabbccd0 #child\n"
                                "    usb1\n"
                                "    monitor\n");
    service.setProperties(
        registry["Host"],
        dictionary({{"chassis_asset_tag", text("INV-0042 ")},
                    {"product_serial", text("To be filled by O.E.M.")},
                    {"DxBootID", text("7f3c2a10-5b1d-4c21-9a77-0123456789ab")},
                    {"root", text("UUID=7F3C2A10-5B1D-4C21-9A77-0123456789AB of ada-laptop")}}));
    service.setProperties(
        registry["disk"],
        dictionary({{"serial", text("SN-77812")},
                    {"imei_serial", number(354172020305000, 8)},
                    {"wwid", text("naa.5000c500a1b2c3d4")},
                    {"sas_address", number(0x5000c500a1b2c3d4, 8)},
                    {"vpd_pg80", RegistryValue::data("\0\x80\0\x08SN-77812")},
                    {"raw", RegistryValue::data(QByteArray("\0\1SN-77812\0", 11))},
                    {"ID_SERIAL", text("DISK_4T_Z1Z23456")},
                    {"links", array({text("/dev/disk/by-id/ata-DISK_4T_Z1Z23456-part1"),
                                     text("wwn-0x5000c500a1b2c3d4")})},
                    {"traddr", text("192.168.7.9")},
                    {"firmware_version", text("10.20.30.40")},
                    {"model", text("Fast Disk")}}));
    service.setProperties(
        registry["eth0"],
        dictionary({{"address", text("3e:10:aa:bb:cc:d0")},
                    {"broadcast", text("ff:ff:ff:ff:ff:ff")},
                    {"ib", text("80:00:02:08:fe:80:00:00:00:00:00:00:11:22:33:44:55:66:77:88")},
                    {"peer", text("fe80::3c10:aaff:febb:ccd0")},
                    {"udev", dictionary({{"ID_NET_NAME_MAC", text("enx3e10aabbccd0")},
                                         {"OLD", text("3E-10-AA-BB-CC-D0")}})},
                    {"device@3e:10:aa:bb:cc:d0", text("3E:10:AA:BB:CC:D0")},
                    {"local-mac-address", data("3e10aabbccd0")}}));
    service.setProperties(
        registry["usb1"],
        dictionary({{"serial", text("usb1")},
                    {"iSerial", number(3)},
                    {"uniq", text("Ab12:Cd")},
                    {"quoted_serial", text("\"\"")},
                    {"DxUnreadAttributes", dictionary({{"serial", text("not read")}})},
                    {"count", number(3)}}));
    service.setKernelPath(registry["child"],
                          QStringLiteral("/sys/devices/virtual/net/enx3e10aabbccd0"));
    service.setProperties(registry["monitor"], dictionary({{"edid", RegistryValue::data(edid())},
                                                           {"name", text("screen MON-99431")}}));
    service.setComputerName(QStringLiteral("ada-laptop"));
}
} // namespace PrivateRegistry
