// Every extension that a file of the library may have: it gives a picture, or stands here with the reason why not.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "ExtensionFiles.h"
#include "platform/FileTypes.h"
#include "platform/Reader.h"

#include <QColorSpace>
#include <QSet>
#include <QtTest>

using namespace lumbra;

namespace {

// What a small picture of the file shows.
enum class Shows { quarters, page, nothing };

struct Row {
    const char* extension;
    Shows shows;
    const char* reason = nullptr; // why nothing
};

constexpr Row rows[] = {
    {"png", Shows::quarters},
    {"apng", Shows::quarters},
    {"jpg", Shows::quarters},
    {"jpeg", Shows::quarters},
    {"jpe", Shows::quarters},
    {"jfif", Shows::quarters},
    {"gif", Shows::quarters},
    {"webp", Shows::quarters},
    {"heic", Shows::quarters},
    {"heif", Shows::quarters},
    {"heics", Shows::quarters},
    {"avif", Shows::quarters},
    {"tif", Shows::quarters},
    {"tiff", Shows::quarters},
    {"bmp", Shows::quarters},
    {"dib", Shows::quarters},
    {"svg", Shows::quarters},
    {"svgz", Shows::quarters},
    {"psd", Shows::quarters},
    {"psb", Shows::quarters},
    {"exr", Shows::quarters},
    {"hdr", Shows::quarters},
    {"tga", Shows::quarters},
    {"pbm", Shows::page}, // has no colours
    {"pgm", Shows::page},
    {"ppm", Shows::quarters},
    {"pnm", Shows::quarters},
    {"jp2", Shows::quarters},
    {"j2k", Shows::quarters},
    {"jpx", Shows::quarters},
    {"jxl", Shows::quarters},
    {"dng", Shows::quarters},
    {"cr2", Shows::quarters},
    {"cr3", Shows::quarters},
    {"nef", Shows::quarters},
    {"arw", Shows::quarters},
    {"raf", Shows::quarters},
    {"orf", Shows::quarters},
    {"rw2", Shows::quarters},
    {"pef", Shows::quarters},
    {"srw", Shows::quarters},
    {"raw", Shows::quarters},
    {"qoi", Shows::quarters},
    {"xbm", Shows::page}, // has no colours
    {"xpm", Shows::quarters},
    {"pcx", Shows::quarters},
    {"eps", Shows::quarters},

    {"mp4", Shows::quarters},
    {"m4v", Shows::quarters},
    {"mov", Shows::quarters},
    {"qt", Shows::quarters},
    {"avi", Shows::quarters},
    {"mpg", Shows::quarters},
    {"mpeg", Shows::quarters},
    {"mpe", Shows::quarters},
    {"m1v", Shows::quarters},
    {"m2v", Shows::quarters},
    {"mts", Shows::quarters},
    {"m2ts", Shows::quarters},
    {"3gp", Shows::quarters},
    {"3g2", Shows::quarters},
    {"ogv", Shows::quarters},
    {"wmv", Shows::quarters},
    {"asf", Shows::quarters},
    {"flv", Shows::quarters},
    {"f4v", Shows::quarters},
    {"vob", Shows::quarters},
    {"dv", Shows::quarters},
    {"mxf", Shows::quarters},
    {"webm", Shows::quarters},
    {"mkv", Shows::quarters},

    {"mp3", Shows::quarters},
    {"m4a", Shows::quarters},
    {"m4b", Shows::quarters},
    {"aac", Shows::quarters},
    {"wav", Shows::quarters},
    {"aif", Shows::quarters},
    {"aiff", Shows::quarters},
    {"aifc", Shows::quarters},
    {"flac", Shows::quarters},
    {"ogg", Shows::quarters},
    {"oga", Shows::quarters},
    {"opus", Shows::quarters},
    {"mka", Shows::quarters},
    {"wma", Shows::nothing, "a cover would be read, but none of our tools writes one"},
    {"weba", Shows::nothing, "the container allows no covers"},
    {"caf", Shows::nothing, "FFmpeg reads no covers from it"},
    {"amr", Shows::nothing, "has no covers"},
    {"ac3", Shows::nothing, "has no covers"},
    {"au", Shows::nothing, "has no covers"},
    {"mid", Shows::nothing, "has no covers"},
    {"midi", Shows::nothing, "has no covers"},

    {"pdf", Shows::quarters},
    {"ai", Shows::quarters},
    {"txt", Shows::page},
    {"md", Shows::page},
    {"rtf", Shows::page},
    {"csv", Shows::page},
    {"srt", Shows::page},
    {"vtt", Shows::page},
    {"html", Shows::page},
    {"docx", Shows::quarters},
    {"xlsx", Shows::quarters},
    {"pptx", Shows::quarters},
    {"key", Shows::quarters},
    {"pages", Shows::quarters},
    {"numbers", Shows::quarters},
    {"sketch", Shows::quarters},
    {"fig", Shows::quarters},
    {"blend", Shows::quarters},
    {"zip", Shows::nothing, "what lies in it is not its picture"},
    {"doc", Shows::nothing, "no library here reads it: its words are written by a program outside"},
    {"xls", Shows::nothing, "no library here reads it: its words are written by a program outside"},
    {"lottie", Shows::quarters},
    {"usdz", Shows::nothing, "no library here draws it"},
    {"glb", Shows::nothing, "no library here draws it"},
    {"obj", Shows::nothing, "no library here draws it"},
    {"fbx", Shows::nothing, "no library here draws it"},
};

} // namespace

class tst_EveryExtension : public QObject, private ExtensionFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { prepare(); }

    void noExtensionIsForgotten() {
        QSet<QByteArray> listed;
        for (const Row& row : rows)
            listed.insert(row.extension);
        QCOMPARE(listed.size(), qsizetype(std::size(rows)));
        // Every name that the tables can know.
        const std::string letters = "abcdefghijklmnopqrstuvwxyz0123456789";
        std::string name;
        const std::function<void()> look = [&] {
            if (fileTypeOf(name) && !listed.contains(QByteArray::fromStdString(name)))
                QFAIL(name.c_str());
            if (name.size() == 5)
                return;
            // The last letter of a long name is no number.
            for (const char letter : name.size() < 4 ? letters : letters.substr(0, 26)) {
                name.push_back(letter);
                look();
                name.pop_back();
            }
        };
        look();
    }

    void everyExtension_data() {
        QTest::addColumn<QByteArray>("extension");
        QTest::addColumn<int>("shows");
        for (const Row& row : rows)
            QTest::newRow(row.extension) << QByteArray(row.extension) << int(row.shows);
    }

    void everyExtension() {
        QFETCH(QByteArray, extension);
        QFETCH(int, shows);
        const QByteArray name = "file." + extension;
        makeFile(extension, name);
        QVERIFY(QFile::exists(path(name)));
        QImage image = thumbnail(name);
        QCOMPARE(image.isNull(), shows == int(Shows::nothing));
        // The same behind the bars of the reader's process.
        QFuture<QImage> task = m_reader.thumbnail(Location(path(name)), box);
        task.waitForFinished();
        image.setColorSpace({}); // which is told apart although both are the screen's
        QCOMPARE(task.result(), image);
        if (shows == int(Shows::nothing))
            return;
        QVERIFY(image.width() <= box.width() && image.height() <= box.height());
        QVERIFY(image.width() == box.width() || image.height() == box.height());
        if (shows == int(Shows::quarters))
            QVERIFY(showsQuarters(image));
        else
            QVERIFY(isWrittenOn(image));
    }

    void anEmptyFileIsNothingWhateverItsName() {
        for (const Row& row : rows) {
            const QByteArray name = QByteArray("empty.") + row.extension;
            write(name, {});
            QVERIFY2(thumbnail(name).isNull(), row.extension);
        }
    }

private:
    static bool isWrittenOn(const QImage& image) {
        int dark = 0, light = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                dark += qGray(image.pixel(x, y)) < 160;
                light += qGray(image.pixel(x, y)) > 230;
            }
        }
        return dark > 20 && light > 20;
    }

    Reader m_reader;
};

QTEST_MAIN(tst_EveryExtension)
#include "tst_everyextension.moc"
