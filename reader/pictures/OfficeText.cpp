// SPDX-License-Identifier: GPL-3.0-or-later
#include "OfficeText.h"

#include <QXmlStreamReader>

namespace lumbra::reader {

namespace {

using Style = Paragraph::Style;

constexpr qint64 partLimit = 16 * 1024 * 1024; // bytes, unpacked
constexpr qsizetype mostParagraphs = 80;
constexpr qsizetype mostRows = 40;
constexpr qsizetype mostColumns = 16;
constexpr qsizetype mostStrings = 20'000; // that sheets share
constexpr qsizetype longestText = 3000;

Style styleCalled(QStringView name) {
    if (name.startsWith(u"Title") || name == u"Heading1")
        return Style::title;
    if (name.startsWith(u"Heading") || name.startsWith(u"Subtitle"))
        return Style::heading;
    return name.startsWith(u"List") ? Style::item : Style::body;
}

// Goes to the next element's start or end, or to letters; false at the end, after an error, and where types are
// declared: no office document does that.
bool advance(QXmlStreamReader& xml) {
    return !xml.atEnd() && xml.readNext() != QXmlStreamReader::DTD && !xml.hasError();
}

// `inRuns`: letters stand in "t" elements inside a paragraph, and what is beside them is not text.
Paragraphs paragraphsOf(const QByteArray& part, bool inRuns) {
    QXmlStreamReader xml(part);
    Paragraphs made;
    Paragraph paragraph;
    bool isOpen = false, isText = false;
    while (made.size() < mostParagraphs && advance(xml)) {
        const bool isParagraph = xml.name() == u"p" || (!inRuns && xml.name() == u"h");
        if (xml.isStartElement() && isParagraph) {
            isOpen = true;
            paragraph = {{}, xml.name() == u"h" ? Style::heading : Style::body};
        } else if (xml.isStartElement() && xml.name() == u"pStyle") {
            for (const QXmlStreamAttribute& attribute : xml.attributes())
                paragraph.style = styleCalled(attribute.value());
        } else if (xml.isStartElement() && (xml.name() == u"tab" || xml.name() == u"br" || xml.name() == u"s")) {
            paragraph.text += u' ';
        } else if (xml.name() == u"t" && !xml.isCharacters()) {
            isText = xml.isStartElement();
        } else if (xml.isCharacters() && isOpen && (isText || !inRuns) && paragraph.text.size() < longestText) {
            paragraph.text += xml.text();
        } else if (xml.isEndElement() && isParagraph) {
            isOpen = false;
            paragraph.text = paragraph.text.simplified();
            if (!paragraph.text.isEmpty())
                made.append(paragraph);
        }
    }
    return made;
}

QStringList stringsOf(const QByteArray& part) {
    QXmlStreamReader xml(part);
    QStringList strings;
    bool isText = false;
    while (strings.size() < mostStrings && advance(xml)) {
        if (xml.isStartElement() && xml.name() == u"si")
            strings.append(QString());
        else if (xml.name() == u"t" && !xml.isCharacters())
            isText = xml.isStartElement();
        else if (xml.isCharacters() && isText && !strings.isEmpty() && strings.last().size() < longestText)
            strings.last() += xml.text();
    }
    return strings;
}

// "C7" is in the third column.
qsizetype columnOf(QStringView place) {
    qsizetype column = 0;
    for (const QChar letter : place) {
        if (letter < u'A' || letter > u'Z' || column > mostColumns)
            break;
        column = column * 26 + (letter.unicode() - u'A' + 1);
    }
    return column - 1;
}

QList<QStringList> rowsOf(const QByteArray& part, const QStringList& strings) {
    QXmlStreamReader xml(part);
    QList<QStringList> rows;
    qsizetype column = -1;
    bool isShared = false, isValue = false;
    QString value;
    while (rows.size() <= mostRows && advance(xml)) {
        if (xml.isStartElement() && xml.name() == u"row") {
            rows.append(QStringList());
        } else if (xml.isStartElement() && xml.name() == u"c") {
            column = columnOf(xml.attributes().value(QStringLiteral("r")));
            isShared = xml.attributes().value(QStringLiteral("t")) == u"s";
            value.clear();
        } else if ((xml.name() == u"v" || xml.name() == u"t") && !xml.isCharacters()) {
            isValue = xml.isStartElement();
        } else if (xml.isCharacters() && isValue && value.size() < longestText) {
            value += xml.text();
        } else if (xml.isEndElement() && xml.name() == u"c" && !rows.isEmpty()) {
            QStringList& row = rows.last();
            if (column < 0 || column >= mostColumns)
                continue;
            row.resize(std::max(row.size(), column + 1));
            row[column] = (isShared ? strings.value(value.toInt()) : value).simplified();
        }
    }
    rows.removeIf([](const QStringList& cells) { return cells.join(QString()).isEmpty(); });
    return rows;
}

} // namespace

Paragraphs officeText(const Archive& archive) {
    if (const QByteArray text = archive.entry("word/document.xml", partLimit); !text.isEmpty())
        return paragraphsOf(text, true);
    if (const QByteArray slide = archive.entry("ppt/slides/slide1.xml", partLimit); !slide.isEmpty()) {
        Paragraphs paragraphs = paragraphsOf(slide, true);
        if (!paragraphs.isEmpty())
            paragraphs.first().style = Style::title;
        return paragraphs;
    }
    return paragraphsOf(archive.entry("content.xml", partLimit), false);
}

QList<QStringList> officeTable(const Archive& archive) {
    const QByteArray sheet = archive.entry("xl/worksheets/sheet1.xml", partLimit);
    if (sheet.isEmpty())
        return {};
    return rowsOf(sheet, stringsOf(archive.entry("xl/sharedStrings.xml", partLimit)));
}

} // namespace lumbra::reader
