// SPDX-License-Identifier: Apache-2.0
#include "model/linux/ModaliasNumbers.h"

namespace {
// Takes numbers of fixed width behind their letters from the start of a text.
class Scanner
{
public:
    explicit Scanner(QStringView text)
        : rest_(text)
    {}

    quint32 take(QLatin1String letters, qsizetype digits)
    {
        const qsizetype size = letters.size() + digits;
        bool isNumber = false;
        quint32 number = 0;
        if (rest_.size() >= size && rest_.startsWith(letters))
            number = rest_.sliced(letters.size(), digits).toUInt(&isNumber, 16);
        isGood_ = isGood_ && isNumber;
        if (isGood_)
            rest_ = rest_.sliced(size);
        return number;
    }
    bool isGood() const { return isGood_; }

private:
    QStringView rest_;
    bool isGood_ = true;
};
} // namespace

std::optional<ModaliasNumbers> ModaliasNumbers::of(QStringView modalias)
{
    const bool isPci = modalias.startsWith(QLatin1String("pci:"));
    Scanner scanner(modalias.sliced(std::min<qsizetype>(4, modalias.size())));
    ModaliasNumbers numbers{};
    const auto take = [&](const char *letters, qsizetype digits) {
        return scanner.take(QLatin1String(letters), digits);
    };
    if (isPci) {
        numbers.bus = Bus::Pci;
        numbers.vendor = static_cast<quint16>(take("v", 8));
        numbers.device = static_cast<quint16>(take("d", 8));
        take("sv", 8);
        take("sd", 8);
        numbers.baseClass = static_cast<quint8>(take("bc", 2));
        numbers.subclass = static_cast<quint8>(take("sc", 2));
    } else if (modalias.startsWith(QLatin1String("usb:"))) {
        numbers.bus = Bus::Usb;
        numbers.vendor = static_cast<quint16>(take("v", 4));
        numbers.device = static_cast<quint16>(take("p", 4));
        take("d", 4);
        numbers.baseClass = static_cast<quint8>(take("dc", 2));
        numbers.subclass = static_cast<quint8>(take("dsc", 2));
    } else {
        return std::nullopt;
    }
    return scanner.isGood() ? std::optional(numbers) : std::nullopt;
}
