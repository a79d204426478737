// SPDX-License-Identifier: GPL-3.0-or-later
#include "core/Clipboard.h"
#include "support/TestHome.h"

#include <QBuffer>
#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QProcess>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

#include <functional>

using namespace lumbra;

namespace {

// A display of the test's own, since a clipboard belongs to all of a display's programs.
class VirtualDisplay {
public:
    VirtualDisplay() {
        m_server.start(QStringLiteral("Xvfb"),
                       {QStringLiteral("-displayfd"), QStringLiteral("1"), QStringLiteral("-nolisten"),
                        QStringLiteral("tcp"), QStringLiteral("-screen"), QStringLiteral("0"),
                        QStringLiteral("640x480x24")});
        while (!m_server.canReadLine()) {
            if (!m_server.waitForReadyRead())
                qFatal("cannot start a display");
        }
        qputenv("DISPLAY", ":" + m_server.readLine().trimmed());
        qputenv("QT_QPA_PLATFORM", "xcb");
    }
    ~VirtualDisplay() {
        m_server.kill();
        m_server.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(VirtualDisplay)

private:
    QProcess m_server;
};

// Another program that has copied a text and offers it until it ends.
class OtherProgram {
public:
    explicit OtherProgram(const QByteArray& text) {
        m_process.start(QStringLiteral("xclip"), {QStringLiteral("-i"), QStringLiteral("-quiet"),
                                                  QStringLiteral("-selection"), QStringLiteral("clipboard")});
        m_process.write(text);
        m_process.closeWriteChannel();
    }
    ~OtherProgram() { end(); }

    void end() {
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    QProcess m_process;
};

// What another program gets when it pastes.
QByteArray pasted(const char* type) {
    QProcess program;
    program.start(QStringLiteral("xclip"), {QStringLiteral("-o"), QStringLiteral("-selection"),
                                            QStringLiteral("clipboard"), QStringLiteral("-t"), QLatin1String(type)});
    if (!QTest::qWaitFor([&program] { return program.state() == QProcess::NotRunning; }, patience))
        qFatal("a program that pastes does not end");
    return program.exitCode() == 0 ? program.readAllStandardOutput() : QByteArray();
}

QByteArrayList offered() {
    return pasted("TARGETS").trimmed().split('\n');
}

bool offersPicture() {
    const QByteArrayList types = offered();
    return std::any_of(types.begin(), types.end(), [](const QByteArray& type) { return type.startsWith("image/"); });
}

QImage picture() {
    QImage made(40, 30, QImage::Format_RGB32);
    made.fill(QColor(200, 40, 90));
    return made;
}

QByteArray encoded(const char* format) {
    QBuffer buffer;
    picture().save(&buffer, format, 95);
    return buffer.data();
}

bool looksRight(const QImage& image) {
    const QColor middle = image.pixelColor(20, 15);
    return image.size() == QSize(40, 30) && std::abs(middle.red() - 200) < 8 && std::abs(middle.green() - 40) < 8
           && std::abs(middle.blue() - 90) < 8;
}

// Keeps what it is given.
class Notepad : public Pasteboard {
public:
    Contents contents;
    int additions = 0;

    quint64 set(const Contents& set) override {
        contents = set;
        return 1;
    }
    quint64 announce() override { return 1; }
    bool supply(quint64, const Contents& supplied) override {
        contents = supplied;
        return true;
    }
    void add(quint64, const Contents& flavours) override {
        contents += flavours;
        ++additions;
    }
    QStringList types() const {
        QStringList found;
        for (const Flavour& flavour : contents)
            found.append(flavour.type);
        return found;
    }
};

} // namespace

class ClipboardTest : public QObject {
    Q_OBJECT

    TestHome m_home;
    Reader m_reader{{.children = 1}}; // answers in order

private Q_SLOTS:
    void filesArriveInAllForms() {
        const Location first = m_home.file("a b.txt");
        const Location second = m_home.file("100%#ä\n?.mp4");
        Clipboard::write({first, second});
        const QByteArray firstUrl = "file://" + m_home.path().path() + "/a%20b.txt";
        const QByteArray secondUrl = "file://" + m_home.path().path() + "/100%25%23%C3%A4%0A%3F.mp4";
        QCOMPARE(pasted("text/uri-list"), firstUrl + "\r\n" + secondUrl + "\r\n");
        QCOMPARE(pasted("x-special/gnome-copied-files"), "copy\n" + firstUrl + "\n" + secondUrl);
        QCOMPARE(pasted("text/plain"), QByteArray("a b.txt\n100%#ä\n?.mp4"));
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("a b.txt\n100%#ä\n?.mp4"));
    }

    void aLoneJpegArrivesAsADecodedPicture() {
        Clipboard::write({m_home.file("photo.JPG", encoded("jpg"))});
        QTRY_VERIFY(offersPicture());
        QVERIFY(looksRight(QImage::fromData(pasted("image/tiff"), "tiff")));
        QVERIFY(looksRight(QImage::fromData(pasted("image/png"), "png")));
        QCOMPARE(pasted("text/plain"), QByteArray("photo.JPG"));
        QVERIFY(pasted("text/uri-list").endsWith("/photo.JPG\r\n"));
    }

    void aLonePngArrivesAsItsOwnBytes() {
        const QByteArray bytes = encoded("png") + "and a tail that no other encoder would write";
        Clipboard::write({m_home.file("sketch.png", bytes)});
        QTRY_VERIFY(offersPicture());
        QCOMPARE(pasted("image/png"), bytes);
        QVERIFY(!offered().contains("image/tiff"));
        QCOMPARE(pasted("text/plain"), QByteArray("sketch.png"));
    }

    void aDrawingArrivesAsAPicture() {
        Clipboard::write({m_home.file("logo.svg", "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
                                                  "<rect width='40' height='30' fill='#c8285a'/></svg>")});
        QTRY_VERIFY(offersPicture());
        const QImage image = QImage::fromData(pasted("image/png"), "png");
        QCOMPARE(image.size(), QSize(1024, 768));
        QCOMPARE(image.pixelColor(500, 300), QColor(200, 40, 90));
    }

    void twoPicturesArriveAsFilesOnly() {
        Notepad notepad;
        Clipboard::write({m_home.file("a.jpg", encoded("jpg")), m_home.file("b.png", encoded("png"))}, notepad,
                         m_reader);
        settle();
        QCOMPARE(notepad.types(),
                 QStringList({QStringLiteral("text/uri-list"), QStringLiteral("x-special/gnome-copied-files"),
                              QStringLiteral("text/plain")}));
    }

    void onlyAPictureArrivesAsOne_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("a video") << QStringLiteral("clip.mp4") << encoded("jpg");
        QTest::newRow("text") << QStringLiteral("notes.txt") << encoded("png");
        QTest::newRow("no extension") << QStringLiteral("png") << encoded("png");
        QTest::newRow("a broken jpeg") << QStringLiteral("broken.jpg") << QByteArray("no picture");
        QTest::newRow("an empty png") << QStringLiteral("empty.png") << QByteArray();
    }
    void onlyAPictureArrivesAsOne() {
        QFETCH(QString, name);
        QFETCH(QByteArray, bytes);
        Notepad notepad;
        Clipboard::write({m_home.file(name.toStdString(), bytes)}, notepad, m_reader);
        settle();
        QCOMPARE(notepad.additions, 0);
        QCOMPARE(notepad.contents.size(), 3);
        QCOMPARE(notepad.contents.last().bytes, name.toUtf8());
    }

    void aFileThatCannotBeReadIsStillCopied() {
        Notepad notepad;
        const Location pipe = m_home.path().child("pipe.png");
        QCOMPARE(::mkfifo(pipe.path().constData(), 0600), 0);
        Clipboard::write({pipe}, notepad, m_reader);
        QCOMPARE(notepad.contents.last().bytes, QByteArray("pipe.png"));
        settle();
        Clipboard::write({m_home.path().child("gone.png")}, notepad, m_reader);
        QCOMPARE(notepad.contents.last().bytes, QByteArray("gone.png"));
        settle();
        QCOMPARE(notepad.additions, 0);
    }

    void textReplacesEverything() {
        Clipboard::write({m_home.file("photo.jpg", encoded("jpg"))});
        QTRY_VERIFY(offersPicture());
        Clipboard::copyText(QStringLiteral("/a\n/ä"));
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("/a\n/ä"));
        const QByteArrayList types = offered();
        QVERIFY(!types.contains("text/uri-list") && !types.contains("x-special/gnome-copied-files"));
        QVERIFY(!offersPicture());
    }

    void noTextIsEmptyText() {
        Clipboard::copyText(QStringLiteral("before"));
        Clipboard::copyText(QString());
        QVERIFY(offered().contains("UTF8_STRING"));
        QCOMPARE(pasted("UTF8_STRING"), QByteArray());
    }

    void noFilesEmptyTheClipboard() {
        Clipboard::copyText(QStringLiteral("before"));
        Clipboard::write({});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray());
        QCOMPARE(pasted("text/uri-list"), QByteArray());
    }

    void whatArrivesLateDoesNotDisplaceALaterCopy() {
        Pasteboard& pasteboard = Pasteboard::general();
        const quint64 first = pasteboard.set({{QStringLiteral("text/plain"), "first"}});
        pasteboard.set({{QStringLiteral("text/plain"), "second"}});
        pasteboard.add(first, {{QStringLiteral("image/png"), "late"}});
        QVERIFY(!offersPicture());
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("second"));
    }

    void whatArrivesLateDoesNotDisplaceAnotherProgramsCopy() {
        Pasteboard& pasteboard = Pasteboard::general();
        const quint64 ours = pasteboard.set({{QStringLiteral("text/plain"), "ours"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("ours"));
        OtherProgram other("theirs");
        QTRY_COMPARE(pasted("UTF8_STRING"), QByteArray("theirs"));
        pasteboard.add(ours, {{QStringLiteral("image/png"), "late"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("theirs"));
    }

    void manyFilesArriveAMomentLaterInTheSameForms() {
        QByteArray list, copied = "copy", names;
        for (const Location& file : m_many) {
            const QByteArray url = file.toUrl().toEncoded();
            list += url + "\r\n";
            copied += '\n' + url;
            names += (names.isEmpty() ? "" : "\n") + file.name().toUtf8();
        }
        Clipboard::write(m_many);
        QTRY_VERIFY(offered().contains("text/uri-list"));
        QCOMPARE(pasted("text/uri-list"), list);
        QCOMPARE(pasted("x-special/gnome-copied-files"), copied);
        QCOMPARE(pasted("UTF8_STRING"), names);
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls().size(), m_many.size());
    }

    void thatFilesCanBePastedIsToldOnceTheyStand() {
        int told = 0;
        const auto write = [&](const QList<Location>& files) {
            Clipboard::write(files, Pasteboard::general(), m_reader, [&told] { ++told; });
        };
        write({Location(QByteArray("/one"))});
        QCOMPARE(told, 1);
        write(m_many);
        QCOMPARE(told, 1);
        QTRY_COMPARE(told, 2);
        QCOMPARE(QGuiApplication::clipboard()->mimeData()->urls().size(), m_many.size());
        // Nothing is said of what others have taken the place of.
        write(m_many);
        Clipboard::copyText(QStringLiteral("next"));
        settle();
        QCOMPARE(told, 2);
    }

    void manyPathsArriveAMomentLater() {
        Clipboard::copyText(QStringLiteral("before"));
        QByteArrayList paths;
        for (const Location& file : m_many)
            paths.append(file.path());
        Clipboard::writePaths(m_many);
        QTRY_COMPARE(pasted("UTF8_STRING"), paths.join('\n'));
        QVERIFY(!offered().contains("text/uri-list"));
    }

    void whatIsCopiedMeanwhileWins_data() {
        QTest::addColumn<std::function<void()>>("copy");
        QTest::newRow("text") << std::function([] { Clipboard::copyText(QStringLiteral("next")); });
        QTest::newRow("text of a field") << std::function(
            [] { QGuiApplication::clipboard()->setText(QStringLiteral("next")); });
        QTest::newRow("a file") << std::function([] { Clipboard::write({Location(QByteArray("/next"))}); });
        QTest::newRow("many files") << std::function(
            [] { Clipboard::write(QList<Location>(3000, Location(QByteArray("/next")))); });
    }
    void whatIsCopiedMeanwhileWins() {
        QFETCH(std::function<void()>, copy);
        Clipboard::copyText(QStringLiteral("before"));
        Clipboard::write(m_many);
        copy();
        settle();
        QTRY_VERIFY(pasted("UTF8_STRING").startsWith("next"));
        Clipboard::writePaths(m_many);
        copy();
        settle();
        QTRY_VERIFY(pasted("UTF8_STRING").startsWith("next"));
    }

    void whatAnotherProgramCopiesMeanwhileWins() {
        Pasteboard& pasteboard = Pasteboard::general();
        pasteboard.set({{QStringLiteral("text/plain"), "ours"}});
        const quint64 number = pasteboard.announce();
        OtherProgram other("theirs");
        QTRY_COMPARE(pasted("UTF8_STRING"), QByteArray("theirs"));
        pasteboard.supply(number, {{QStringLiteral("text/plain"), "late"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("theirs"));
    }

    void aProgramThatEndsMeanwhileLeavesNothingToKeep() {
        OtherProgram other("theirs");
        QTRY_COMPARE(pasted("UTF8_STRING"), QByteArray("theirs"));
        Pasteboard& pasteboard = Pasteboard::general();
        const quint64 number = pasteboard.announce();
        QSignalSpy changed(QGuiApplication::clipboard(), &QClipboard::dataChanged);
        other.end();
        QTRY_VERIFY(!changed.isEmpty());
        pasteboard.supply(number, {{QStringLiteral("text/plain"), "ours"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("ours"));
    }

    void whatIsAnnouncedLeavesWhatIsThere() {
        Pasteboard& pasteboard = Pasteboard::general();
        const quint64 before = pasteboard.set({{QStringLiteral("text/plain"), "before"}});
        const quint64 number = pasteboard.announce();
        pasteboard.add(before, {{QStringLiteral("image/png"), "late"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("before"));
        QVERIFY(!offersPicture());
        pasteboard.supply(number, {{QStringLiteral("text/plain"), "then"}});
        pasteboard.add(number, {{QStringLiteral("image/png"), "in time"}});
        QCOMPARE(pasted("UTF8_STRING"), QByteArray("then"));
        QVERIFY(offersPicture());
    }

private:
    // More than are copied at once.
    static QList<Location> manyFiles() {
        QList<Location> files;
        for (int i = 0; i < 3000; ++i)
            files.append(Location(QStringLiteral("/a folder/%1 ä.txt").arg(i)));
        return files;
    }
    const QList<Location> m_many = manyFiles();

    // Everything that was begun is done: what is read, then decoded, then encoded.
    void settle() {
        Tasks::pool(Tasks::Pool::userInitiated).waitForDone();
        QCoreApplication::processEvents();
        bool answered = false;
        QObject context;
        Reader::shared()
            .thumbnail(Location(QStringView(u"/")), QSize(1, 1), Reader::Urgency::later)
            .then(&context, [&answered](const QImage&) { answered = true; });
        QTRY_VERIFY(answered);
        Tasks::pool(Tasks::Pool::userInitiated).waitForDone();
        QCoreApplication::processEvents();
    }
};

int main(int argc, char** argv) {
    const VirtualDisplay display;
    QGuiApplication application(argc, argv);
    ClipboardTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_clipboard.moc"
