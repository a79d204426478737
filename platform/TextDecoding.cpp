// SPDX-License-Identifier: GPL-3.0-or-later
#include "TextDecoding.h"

#include <QStringDecoder>

namespace lumbra {

namespace {

QString decoded(const QByteArray& bytes) {
    if (const auto marked = QStringConverter::encodingForData(bytes);
        marked == QStringConverter::Utf16LE || marked == QStringConverter::Utf16BE || bytes.startsWith("\xef\xbb\xbf"))
        return QStringDecoder(*marked)(bytes);
    QStringDecoder utf8(QStringConverter::Utf8);
    const QString text = utf8(bytes);
    return utf8.hasError() ? QString::fromLatin1(bytes) : text;
}

} // namespace

QString decodedText(const QByteArray& bytes) {
    QString text = decoded(bytes);
    text.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    text.replace(u'\r', u'\n');
    return text;
}

} // namespace lumbra
