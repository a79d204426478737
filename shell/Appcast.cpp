// SPDX-License-Identifier: GPL-3.0-or-later
#include "Appcast.h"

#include <QRegularExpression>
#include <QXmlStreamReader>

namespace lumbra::Appcast {

namespace {

constexpr qsizetype longestNotes = 600; // characters that an alert has room for

// Notes are a page of their own; what an alert shows of them is the words.
QString words(QString notes) {
    static const QRegularExpression tag(QStringLiteral("<[^>]*>"));
    notes = notes.replace(tag, QStringLiteral(" ")).simplified();
    return notes.size() > longestNotes ? notes.left(longestNotes - 1) + u'…' : notes;
}

void takeNumber(Version& version, const QString& text) {
    if (const auto number = QVersionNumber::fromString(text.trimmed()); !number.isNull())
        version.number = number;
}

void takePage(Version& version, const QString& text) {
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    if (url.isValid() && url.scheme() == QLatin1String("https"))
        version.page = url;
}

// The number is that which people read, where both are given.
Version readItem(QXmlStreamReader& xml) {
    Version version;
    QString built;
    while (xml.readNextStartElement()) {
        const auto name = xml.name();
        if (name == u"enclosure") {
            for (const QXmlStreamAttribute& attribute : xml.attributes()) {
                if (attribute.name() == u"shortVersionString")
                    takeNumber(version, attribute.value().toString());
                else if (attribute.name() == u"version")
                    built = attribute.value().toString();
                else if (attribute.name() == u"url" && version.page.isEmpty())
                    takePage(version, attribute.value().toString());
            }
            xml.skipCurrentElement();
        } else if (name == u"shortVersionString") {
            takeNumber(version, xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (name == u"version") {
            built = xml.readElementText(QXmlStreamReader::SkipChildElements);
        } else if (name == u"link") {
            takePage(version, xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else if (name == u"description") {
            version.notes = words(xml.readElementText(QXmlStreamReader::SkipChildElements));
        } else {
            xml.skipCurrentElement();
        }
    }
    if (version.number.isNull())
        takeNumber(version, built);
    return version;
}

} // namespace

std::optional<Version> newest(const QByteArray& feed) {
    QXmlStreamReader xml(feed);
    std::optional<Version> best;
    while (!xml.atEnd()) {
        if (xml.readNext() == QXmlStreamReader::DTD)
            return std::nullopt; // a feed has no use for entities of its own
        if (!xml.isStartElement() || xml.name() != u"item")
            continue;
        const Version version = readItem(xml);
        if (!version.number.isNull() && !version.page.isEmpty() && (!best || version.number > best->number))
            best = version;
    }
    return xml.hasError() ? std::nullopt : best;
}

} // namespace lumbra::Appcast
