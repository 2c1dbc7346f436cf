// SPDX-License-Identifier: Apache-2.0
#include "store/PropertyListReader.h"

#include "store/StoreLogging.h"

#include <QSet>
#include <QStringDecoder>

namespace {
constexpr qsizetype maxListSize = 64 * 1024 * 1024; // bytes
constexpr int maxNesting = 64;
constexpr qsizetype maxTagSize = 512;

// The position after a tag; -1: too long, or declares something.
qsizetype endOfTag(QStringView xml, qsizetype start)
{
    QChar quote;
    for (const QChar c : xml.sliced(start, std::min(maxTagSize, xml.size() - start))) {
        ++start;
        if (!quote.isNull())
            quote = c == quote ? QChar() : quote;
        else if (c == u'>')
            return start;
        else if (c == u'[')
            return -1;
        else if (c == u'"' || c == u'\'')
            quote = c;
    }
    return -1;
}

// The end of the markup that starts at the position: its end mark or, for tags and document types,
// the position after it. -1: none, too long, or declares something.
qsizetype endOfMarkup(QStringView xml, qsizetype start)
{
    static constexpr struct
    {
        QLatin1String opening;
        QLatin1String closing;
    } kinds[] = {{QLatin1String("<!--"), QLatin1String("-->")},
                 {QLatin1String("<![CDATA["), QLatin1String("]]>")},
                 {QLatin1String("<?"), QLatin1String("?>")}};
    for (const auto &[opening, closing] : kinds) {
        // Start and end must not overlap, as in "<!-->".
        if (xml.sliced(start).startsWith(opening))
            return xml.indexOf(closing, start + opening.size());
    }
    return endOfTag(xml, start);
}

// The stream reader's time grows with the square of a tag's attributes and of the declarations of
// the document type; property lists need neither.
bool hasShortTags(QStringView xml)
{
    qsizetype start = xml.indexOf(u'<');
    while (start >= 0) {
        start = endOfMarkup(xml, start);
        if (start < 0)
            return false;
        start = xml.indexOf(u'<', start);
    }
    return true;
}
} // namespace

RegistryValue PropertyListReader::read(const QByteArray &xml)
{
    if (xml.size() > maxListSize)
        return {};
    QStringDecoder decoder(QStringDecoder::Utf8);
    const QString text = decoder(xml);
    if (decoder.hasError() || !hasShortTags(text))
        return {};
    return PropertyListReader(text).readDocument();
}

PropertyListReader::PropertyListReader(const QString &xml)
    : xml_(xml)
{}

RegistryValue PropertyListReader::readDocument()
{
    RegistryValue value;
    if (nextElement() && xml_.name() == QLatin1String("plist") && nextElement())
        value = readValue(0);
    if (nextElement())
        fail("more than one value");
    while (!xml_.atEnd())
        xml_.readNext();
    if (!xml_.hasError())
        return value;
    qCDebug(storeLog, "Property list, line %lld: %ls", xml_.lineNumber(),
            qUtf16Printable(xml_.errorString()));
    return {};
}

// Moves to the start of the next element; false at the end of the enclosing one.
bool PropertyListReader::nextElement()
{
    while (!xml_.atEnd()) {
        switch (xml_.readNext()) {
        case QXmlStreamReader::StartElement:
            return true;
        case QXmlStreamReader::EndElement:
            return false;
        case QXmlStreamReader::Characters:
            if (!xml_.isWhitespace())
                fail("text between elements");
            break;
        case QXmlStreamReader::EntityReference:
            fail("unknown entity");
            break;
        default:
            break;
        }
    }
    return false;
}

RegistryValue PropertyListReader::readValue(int depth)
{
    const auto name = xml_.name();
    const bool isDictionary = name == QLatin1String("dict");
    if (isDictionary || name == QLatin1String("array")) {
        if (depth == maxNesting)
            return fail("nested too deeply");
        return isDictionary ? readDictionary(depth) : readArray(depth);
    }
    if (name == QLatin1String("string"))
        return RegistryValue::string(readText());
    if (name == QLatin1String("integer"))
        return readInteger();
    if (name == QLatin1String("real"))
        return readReal();
    if (name == QLatin1String("true"))
        return readEmpty(RegistryValue::boolean(true));
    if (name == QLatin1String("false"))
        return readEmpty(RegistryValue::boolean(false));
    if (name == QLatin1String("data"))
        return readData();
    if (name == QLatin1String("date"))
        return readDate();
    return fail("unknown element");
}

RegistryValue PropertyListReader::readDictionary(int depth)
{
    RegistryValue::Members members;
    QSet<QString> keys;
    while (nextElement()) {
        if (xml_.name() != QLatin1String("key"))
            return fail("a key is missing");
        const QString key = readText();
        if (keys.contains(key))
            return fail("a key occurs twice");
        keys.insert(key);
        if (!nextElement())
            return fail("a value is missing");
        members.push_back({CompactString(key), readValue(depth + 1)});
    }
    return RegistryValue::dictionary(std::move(members));
}

RegistryValue PropertyListReader::readArray(int depth)
{
    RegistryValue::Elements elements;
    while (nextElement())
        elements.push_back(readValue(depth + 1));
    return RegistryValue::array(std::move(elements));
}

RegistryValue PropertyListReader::readInteger()
{
    const QString text = readText().trimmed();
    const int base = text.contains(u'x', Qt::CaseInsensitive) ? 16 : 10;
    bool ok = false;
    if (const quint64 bits = text.toULongLong(&ok, base); ok)
        return RegistryValue::number(bits, 8);
    const qint64 number = text.toLongLong(&ok, base);
    return ok ? RegistryValue::number(static_cast<quint64>(number), 8, true)
              : fail("not an integer");
}

RegistryValue PropertyListReader::readReal()
{
    const QString text = readText().trimmed();
    bool ok = false;
    text.toDouble(&ok);
    // Deliberate: stored as its text, since values have no fractions.
    return ok ? RegistryValue::string(text) : fail("not a real");
}

RegistryValue PropertyListReader::readData()
{
    QByteArray text = readText().toUtf8();
    text.removeIf([](char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; });
    const auto data = QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    return data && text.size() % 4 == 0 ? RegistryValue::data(*data) : fail("not base64");
}

RegistryValue PropertyListReader::readDate()
{
    const QString text = readText().trimmed();
    const QDateTime date = QDateTime::fromString(text, Qt::ISODate);
    if (!text.endsWith(u'Z') || !date.isValid())
        return fail("not a date");
    return RegistryValue::date(date);
}

RegistryValue PropertyListReader::readEmpty(const RegistryValue &value)
{
    return readText().trimmed().isEmpty() ? value : fail("text in an empty element");
}

QString PropertyListReader::readText()
{
    return xml_.readElementText();
}

RegistryValue PropertyListReader::fail(const char *reason)
{
    if (!xml_.hasError())
        xml_.raiseError(QLatin1String(reason));
    return {};
}
