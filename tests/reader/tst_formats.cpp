// SPDX-License-Identifier: GPL-3.0-or-later
#include "reader/Formats.h"

#include <QtTest>

using namespace lumbra::reader;

namespace {

QByteArray bytes(const char* text, qsizetype size) {
    return QByteArray(text, size);
}

} // namespace

class tst_Formats : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void byContent_data() {
        QTest::addColumn<QByteArray>("head");
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<int>("format");
        const auto row = [](const char* name, const QByteArray& head, const char* extension, Format format) {
            QTest::newRow(name) << head << QByteArray(extension) << int(format);
        };
        row("jpeg", "\xff\xd8\xff\xe0", "jpg", Format::jpeg);
        row("png", "\x89PNG\r\n\x1a\n", "png", Format::png);
        row("gif", "GIF89a", "gif", Format::simpleImage);
        row("webp", "RIFF1234WEBPVP8 ", "webp", Format::webp);
        row("wave is no picture", "RIFF1234WAVEfmt ", "wav", Format::audio);
        row("avi", "RIFF1234AVI LIST", "avi", Format::video);
        row("mp4",
            bytes("\0\0\0\x20"
                  "ftypisom",
                  12),
            "mp4", Format::video);
        row("mov without a brand",
            bytes("\0\0\0\x08"
                  "wide",
                  8),
            "mov", Format::video);
        row("heic",
            bytes("\0\0\0\x20"
                  "ftypheic",
                  12),
            "heic", Format::modernImage);
        row("avif",
            bytes("\0\0\0\x20"
                  "ftypavif",
                  12),
            "avif", Format::modernImage);
        row("jpeg xl", "\xff\x0a", "jxl", Format::modernImage);
        row("webm", "\x1a\x45\xdf\xa3", "webm", Format::video);
        row("pdf", "%PDF-1.7", "pdf", Format::pdf);
        row("pdf after some rubbish", "\n\nrubbish\n%PDF-1.4", "pdf", Format::pdf);
        row("svg", "<svg xmlns='http://www.w3.org/2000/svg'/>", "svg", Format::svg);
        row("svg after declarations",
            "\xef\xbb\xbf<?xml version='1.0'?>\n<!-- a > b -->\n<!DOCTYPE svg PUBLIC '-//W3C' 'x'>\n<svg>", "svg",
            Format::svg);
        row("svg with entities", "<!DOCTYPE svg [<!ENTITY a '>'>]><svg>", "svg", Format::svg);
        row("svg with a prefix", "<s:svg xmlns:s='x'/>", "svg", Format::svg);
        row("svg behind a long preamble", "<!--" + QByteArray(5000, 'x'), "svg", Format::svg);
        row("html that holds a drawing", "<html><svg/></html>", "html", Format::webPage);
        row("a fragment that holds a drawing", "<p><svg/></p>", "html", Format::webPage);

        row("a jpeg that is called png", "\xff\xd8\xff\xe0", "png", Format::jpeg);
        row("a film that is called jpg",
            bytes("\0\0\0\x20"
                  "ftypisom",
                  12),
            "jpg", Format::video);
        row("a text that is called png", "hello, world", "png", Format::unknown);
        row("a text that is called pdf", "hello, world", "pdf", Format::unknown);
        row("tiff", bytes("II*\0", 4), "tif", Format::simpleImage);
        row("a raw photograph begins like tiff", bytes("II*\0", 4), "cr2", Format::raw);
        row("a transport stream", 'G' + QByteArray(187, 'x') + 'G', "ts", Format::video);
        row("a transport stream with times", "0000G" + QByteArray(191, 'x') + 'G', "mts", Format::video);
        row("typescript", "G();" + QByteArray(1000, ' '), "ts", Format::sourceText);
        row("a text that begins like a film", "the wide world", "txt", Format::plainText);
        row("a picture that is called txt", bytes("\xff\xd8\xff\xe0\0", 5), "txt", Format::jpeg);
        row("text of two bytes a letter", bytes("\xff\xfeH\0i\0", 6), "txt", Format::plainText);
        row("bytes that are no text", bytes("ab\0cd", 5), "txt", Format::unknown);
        row("a document in an archive", "PK\3\4", "docx", Format::archive);
        row("a plain archive", "PK\3\4", "zip", Format::unknown);
        row("rich text by another name", "{\\rtf1", "txt", Format::richText);
        row("a packed drawing", "\x1f\x8b", "svgz", Format::packedSvg);
        row("a packed scene", "\x28\xb5\x2f\xfd", "blend", Format::blend);
        row("nothing at all", "", "png", Format::unknown);
        row("one byte", "\xff", "jpg", Format::unknown);
    }

    void byContent() {
        QFETCH(QByteArray, head);
        QFETCH(QByteArray, extension);
        QTEST(int(formatOf(head, extension)), "format");
    }
};

QTEST_GUILESS_MAIN(tst_Formats)
#include "tst_formats.moc"
