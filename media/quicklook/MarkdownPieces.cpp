// SPDX-License-Identifier: GPL-3.0-or-later
#include "MarkdownPieces.h"

#include "TextRows.h"
#include "platform/FileTypes.h"

#include <QUrl>

#include <functional>

namespace lumbra {

QStringView withoutHead(QStringView text) {
    if (!text.startsWith(u"---\n"))
        return text;
    const qsizetype end = text.indexOf(u"\n---\n", 3);
    return end < 0 ? text : text.mid(end + 5);
}

QString withoutTags(QStringView markup) {
    QString words;
    bool inTag = false;
    for (const QChar character : markup) {
        if (character == u'<')
            inTag = true;
        else if (character == u'>')
            inTag = false;
        else if (!inTag)
            words += character;
    }
    return words;
}

QString withSingleBlanks(const QString& text) {
    QString made;
    made.reserve(text.size());
    for (const QChar character : text)
        if (character != u' ' || !made.endsWith(u' '))
            made += character;
    return made;
}

Location pictureAt(const QString& address, const Location& folder) {
    const QUrl url(address);
    if (folder.isEmpty() || !url.isValid() || !url.isRelative() || url.hasQuery() || address.startsWith(u'/'))
        return {};
    const QString path = QUrl::fromPercentEncoding(url.path(QUrl::FullyEncoded).toUtf8());
    const Location file = path.isEmpty() ? Location() : folder.child(path);
    if (fileTypeOf(SmallExtension(file.lastComponent()).view()) != FileType::image || !file.exists()
        || !file.isInside(folder))
        return {};
    return file.canonical();
}

void takeTabsBefore(const char* line, const QByteArray& source, QString& code) {
    constexpr qptrdiff deepest = 100;
    const char* const begin = source.constData();
    if (std::less<>()(line, begin) || !std::less<>()(line, begin + source.size()))
        return;
    const char* from = line;
    while (from > begin && line - from < deepest && (from[-1] == ' ' || from[-1] == '\t'))
        --from;
    const QString margin = QString::fromLatin1(from, line - from); // some of it may be the block's
    if (!margin.contains(u'\t') || (from > begin && from[-1] != '\n'))
        return;
    const qsizetype blanks = code.size() - 1 - code.lastIndexOf(u'\n');
    const qsizetype block = printableText(margin).size() - blanks;
    qsizetype ofBlock = 0;
    while (ofBlock < margin.size() && printableText(margin.left(ofBlock)).size() < block)
        ++ofBlock;
    const QString own = margin.mid(ofBlock);
    const QString shown = printableText(own);
    if (shown.size() == blanks && code.endsWith(shown))
        code.replace(code.size() - blanks, blanks, own);
}

} // namespace lumbra
