// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/TextDecoding.h"

#include <QtTest>

using namespace lumbra;

class tst_TextDecoding : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void bytesAreDecoded_data() {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << QByteArray("plain") << QStringLiteral("plain");
        QTest::newRow("UTF-8") << QByteArray("Gr\xc3\xbc\xc3\x9f") << QStringLiteral("Grüß");
        QTest::newRow("UTF-8 with a mark") << QByteArray("\xef\xbb\xbfGr\xc3\xbc") << QStringLiteral("Grü");
        QTest::newRow("UTF-8 that is cut in a character") << QByteArray("Gr\xc3\xbc\xc3") << QStringLiteral("Grü");
        QTest::newRow("UTF-16, little end first") << QByteArray("\xff\xfeG\0\xfc\0", 6) << QStringLiteral("Gü");
        QTest::newRow("UTF-16, big end first") << QByteArray("\xfe\xff\0G\0\xfc", 6) << QStringLiteral("Gü");
        QTest::newRow("Latin-1") << QByteArray("Gr\xfc\xdf") << QStringLiteral("Grüß");
        QTest::newRow("lines of other systems") << QByteArray("a\r\nb\rc") << QStringLiteral("a\nb\nc");
    }

    void bytesAreDecoded() {
        QFETCH(QByteArray, bytes);
        QTEST(decodedText(bytes), "text");
    }
};

QTEST_GUILESS_MAIN(tst_TextDecoding)
#include "tst_textdecoding.moc"
