// Every extension that a file of the library may have: it gives a picture, or stands here with the reason why not.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include "MadeFiles.h"
#include "PictureFiles.h"
#include "platform/FileTypes.h"
#include "platform/Reader.h"

#include <QColorSpace>
#include <QPdfWriter>
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
    {"doc", Shows::nothing, "no library here reads it, and it seldom holds a preview"},
    {"xls", Shows::nothing, "no library here reads it, and it seldom holds a preview"},
    {"lottie", Shows::nothing, "no library here draws it"},
    {"usdz", Shows::nothing, "no library here draws it"},
    {"glb", Shows::nothing, "no library here draws it"},
    {"obj", Shows::nothing, "no library here draws it"},
    {"fbx", Shows::nothing, "no library here draws it"},
};

// Of a film of the quarters, for the container that the extension stands for.
QByteArrayList filmOptions(const QByteArray& extension) {
    static const QHash<QByteArray, QByteArrayList> options{
        {"qt", {"-f", "mov"}},
        {"mpg", {"-f", "mpeg", "-r", "25"}},
        {"mpeg", {"-f", "mpeg", "-r", "25"}},
        {"mpe", {"-f", "mpeg", "-r", "25"}},
        {"vob", {"-f", "vob", "-r", "25"}},
        {"m1v", {"-c:v", "mpeg1video", "-f", "mpeg1video", "-r", "25"}},
        {"m2v", {"-c:v", "mpeg2video", "-f", "mpeg2video", "-r", "25"}},
        {"mts", {"-f", "mpegts", "-mpegts_m2ts_mode", "1"}},
        {"m2ts", {"-f", "mpegts", "-mpegts_m2ts_mode", "1"}},
        {"3g2", {"-f", "3g2", "-c:v", "mpeg4"}},
        {"3gp", {"-f", "3gp", "-c:v", "mpeg4"}},
        {"ogv", {"-c:v", "libtheora"}},
        {"wmv", {"-c:v", "wmv2"}},
        {"asf", {"-c:v", "wmv2", "-f", "asf"}},
        {"f4v", {"-f", "f4v"}},
        {"dv", {"-target", "pal-dv"}},
        {"mxf", {"-c:v", "mpeg2video", "-r", "25"}},
    };
    return options.value(extension);
}

} // namespace

class tst_EveryExtension : public QObject, private PictureFiles {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() {
        makeModernFormats();
        m_png = read("quarters.png");
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "-ac", "1", "-ar", "8000", "tone.wav"});
    }

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

    void makeFile(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, void (tst_EveryExtension::*)(const QByteArray&, const QByteArray&) const>
            makers = makersByExtension();
        if (const auto maker = makers.value(extension))
            (this->*maker)(extension, name);
        else
            run("convert", {"quarters.png", "-quality", "95", name});
    }

    using Maker = void (tst_EveryExtension::*)(const QByteArray&, const QByteArray&) const;

    static QHash<QByteArray, Maker> makersByExtension() {
        QHash<QByteArray, Maker> makers;
        const auto use = [&makers](Maker maker, std::initializer_list<const char*> extensions) {
            for (const char* extension : extensions)
                makers.insert(extension, maker);
        };
        using Self = tst_EveryExtension;
        use(&Self::copyPicture,
            {"apng", "jpe", "jfif", "dib", "heic", "heif", "heics", "avif", "jxl", "jp2", "j2k", "jpx"});
        use(&Self::makeDrawing, {"svg", "svgz"});
        use(&Self::makeByFfmpeg, {"exr", "qoi", "tga"});
        use(&Self::makeRaw, {"dng", "cr2", "cr3", "nef", "arw", "raf", "orf", "rw2", "pef", "srw", "raw"});
        use(&Self::makePostscript, {"eps"});
        use(&Self::makeFilm, {"mp4", "m4v", "mov", "qt",  "avi", "mpg", "mpeg", "mpe", "m1v", "m2v", "mts",  "m2ts",
                              "3gp", "3g2", "ogv", "wmv", "asf", "flv", "f4v",  "vob", "dv",  "mxf", "webm", "mkv"});
        use(&Self::makeTagged, {"mp3", "aac", "wav", "aif", "aiff", "aifc"});
        use(&Self::makeAlbum, {"m4a", "m4b", "flac", "mka"});
        use(&Self::makeOgg, {"ogg", "oga", "opus"});
        use(&Self::makeSound, {"wma", "weba", "caf", "amr", "ac3", "au"});
        use(&Self::makePage, {"pdf", "ai"});
        use(&Self::makeText, {"txt", "md", "rtf", "csv", "srt", "vtt", "html"});
        use(&Self::makeArchive, {"docx", "xlsx", "pptx", "key", "pages", "numbers", "sketch", "fig", "zip"});
        use(&Self::makeScene, {"blend"});
        use(&Self::makeOther, {"mid", "midi", "doc", "xls", "lottie", "usdz", "glb", "obj", "fbx"});
        return makers;
    }

    void copyPicture(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, QByteArray> sources{
            {"apng", "quarters.png"}, {"jpe", "a.jpg"},   {"jfif", "a.jpg"},   {"dib", "a.bmp"},
            {"heic", "a.heic"},       {"heif", "a.heic"}, {"heics", "a.heic"}, {"avif", "a.avif"},
            {"jxl", "a.jxl"},         {"jp2", "a.jp2"},   {"j2k", "a.jp2"},    {"jpx", "a.jp2"}};
        const QByteArray source = sources.value(extension);
        make(source);
        write(name, read(source));
    }

    void makeDrawing(const QByteArray& extension, const QByteArray& name) const {
        write("drawing.svg",
              "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='30'>"
              "<rect width='20' height='15' fill='#f00'/><rect x='20' width='20' height='15' fill='#0f0'/>"
              "<rect y='15' width='20' height='15' fill='#00f'/>"
              "<rect x='20' y='15' width='20' height='15' fill='#fff'/></svg>");
        if (extension == "svgz") {
            run("gzip", {"-kf", "drawing.svg"});
            QFile::rename(path("drawing.svg.gz"), path(name));
        } else {
            write(name, read("drawing.svg"));
        }
    }

    void makeByFfmpeg(const QByteArray&, const QByteArray& name) const { run("ffmpeg", {"-i", "quarters.png", name}); }

    void makeRaw(const QByteArray&, const QByteArray& name) const {
        write(name, made::rawPhotograph(quarters({320, 240})));
    }

    void makePostscript(const QByteArray&, const QByteArray& name) const {
        write(name, made::postscript(made::encoded(quarters({320, 240}), "tiff")));
    }

    void makeFilm(const QByteArray& extension, const QByteArray& name) const {
        run("ffmpeg", QByteArrayList{"-loop", "1", "-t", "1", "-r", "25", "-i", "quarters.png", "-s", "320x240",
                                     "-pix_fmt", "yuv420p"}
                          + filmOptions(extension) + QByteArrayList{name});
    }

    void makeTagged(const QByteArray& extension, const QByteArray& name) const {
        const QByteArray tag = made::id3(m_png);
        const QByteArrayList format = extension == "aifc" ? QByteArrayList{"-f", "aiff"} : QByteArrayList{};
        run("ffmpeg", QByteArrayList{"-i", "tone.wav"} + format + QByteArrayList{"-write_id3v2", "0", "plain-" + name});
        const QByteArray plain = read("plain-" + name);
        if (extension == "mp3" || extension == "aac") {
            write(name, tag + plain);
            return;
        }
        // A chunk of its own at the end, which the whole's length counts in.
        const bool isWave = extension == "wav";
        const QByteArray padded = tag.size() % 2 ? tag + '\0' : tag;
        const auto number = [isWave](qsizetype value) {
            return isWave ? made::little(quint32(value)) : made::big(quint32(value));
        };
        QByteArray whole = plain + (isWave ? "id3 " : "ID3 ") + number(tag.size()) + padded;
        whole.replace(4, 4, number(whole.size() - 8));
        write(name, whole);
    }

    void makeAlbum(const QByteArray& extension, const QByteArray& name) const {
        if (extension == "mka")
            run("ffmpeg", {"-i", "tone.wav", "-attach", "quarters.png", "-metadata:s:t", "mimetype=image/png", name});
        else
            run("ffmpeg", QByteArrayList{"-i", "tone.wav", "-i", "quarters.png", "-map", "0", "-map", "1", "-c:v",
                                         "copy", "-disposition:v", "attached_pic"}
                              + (extension == "flac" ? QByteArrayList{} : QByteArrayList{"-f", "ipod"})
                              + QByteArrayList{name});
    }

    void makeOgg(const QByteArray& extension, const QByteArray& name) const {
        const QByteArray cover = made::coverBlock(m_png, {640, 480});
        run("ffmpeg", QByteArrayList{"-i", "tone.wav", "-metadata:s:a", "METADATA_BLOCK_PICTURE=" + cover, "-c:a",
                                     extension == "opus" ? "libopus" : "libvorbis", name});
    }

    void makeSound(const QByteArray& extension, const QByteArray& name) const {
        const QByteArrayList format = extension == "weba"  ? QByteArrayList{"-c:a", "libopus", "-f", "webm"}
                                      : extension == "amr" ? QByteArrayList{"-c:a", "copy", "-f", "wav"}
                                                           : QByteArrayList{};
        run("ffmpeg", QByteArrayList{"-i", "tone.wav"} + format + QByteArrayList{name});
    }

    void makePage(const QByteArray&, const QByteArray& name) const {
        QPdfWriter writer(path(name));
        writer.setPageMargins({});
        QPainter(&writer).drawImage(QRect(0, 0, writer.width(), writer.height()), quarters({640, 480}));
    }

    void makeText(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, QByteArray> texts{
            {"txt",
             "Notes of a walk\n\nThe path begins behind the mill and follows the stream up to the second bridge, "
             "where it turns into the wood.\n\nBring water, and something against the rain.\n"},
            {"md",
             "---\ntitle: x\n---\n# Release notes\n\nA **small** release with _one_ new thing:\n\n- Pages of text\n"
             "- [x] Tables\n1. Subtitles\n\n## Code\n\n```\nint main() {\n    return 0;\n}\n```\n\n> Said by "
             "nobody.\n\n---\n\nThe [end](https://example.org).\n"},
            {"rtf",
             "{\\rtf1\\ansi{\\fonttbl\\f0 Helvetica;}\\f0\\fs40 Letter\\par\\fs24 Dear \\'fcber reader,\\par it is "
             "\\u8364?5 now \\emdash  and \\{that\\} is all.\\par}"},
            {"csv", "City,Country,\"Inhabitants, 2020\"\nLisbon,Portugal,544851\nOslo,Norway,697010\n"
                    "\"Bern, the capital\",Switzerland,134794\nQuito,Ecuador,1763275\n"},
            {"srt",
             "1\n00:00:01,000 --> 00:00:03,500\n<i>Where are we?</i>\n\n2\n00:00:04,000 --> 00:00:06,000\nNearly "
             "there.\n"},
            {"vtt", "WEBVTT\n\n00:01.000 --> 00:03.500\nWhere are we?\n\n00:04.000 --> 00:06.000\nNearly there.\n"},
            {"html", "<!DOCTYPE html><html><head><title>x</title><style>body{color:white}</style><script>while(1){}"
                     "</script></head><body><h1>Caf&eacute; Lumi&egrave;re</h1><p>Open from <b>nine</b> to five.</p>"
                     "<ul><li>Coffee</li><li>Cake</li></ul><pre>a &lt; b\n  c</pre></body></html>"},
        };
        write(name, texts.value(extension));
    }

    void makeArchive(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, QByteArray> places{{"docx", "docProps/thumbnail.jpeg"},
                                                          {"xlsx", "docProps/thumbnail.jpeg"},
                                                          {"pptx", "docProps/thumbnail.jpeg"},
                                                          {"key", "QuickLook/Preview.pdf"},
                                                          {"pages", "preview.jpg"},
                                                          {"numbers", "preview-web.jpg"},
                                                          {"sketch", "previews/preview.png"},
                                                          {"fig", "thumbnail.png"},
                                                          {"zip", "preview.jpg"}};
        const QByteArray place = places.value(extension);
        if (place.endsWith("pdf")) {
            makePage({}, "preview.pdf");
            made::zip(path(name), place, read("preview.pdf"));
        } else {
            made::zip(path(name), place, made::encoded(quarters({320, 240}), place.endsWith("png") ? "png" : "jpg"));
        }
    }

    void makeScene(const QByteArray&, const QByteArray& name) const { write(name, made::blend(quarters({240, 180}))); }

    void makeOther(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, QByteArray> starts{
            {"mid", QByteArray("MThd\0\0\0\6\0\0\0\1\0\x60", 14)},
            {"midi", QByteArray("MThd\0\0\0\6\0\0\0\1\0\x60", 14)},
            {"doc", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"},
            {"xls", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"},
            {"lottie", "PK\3\4"},
            {"usdz", "PK\3\4"},
            {"glb", "glTF"},
            {"obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"},
            {"fbx", "Kaydara FBX Binary  "},
        };
        write(name, starts.value(extension) + QByteArray(512, extension == "obj" ? '\n' : '\0'));
    }

    QByteArray m_png;
    Reader m_reader;
};

QTEST_MAIN(tst_EveryExtension)
#include "tst_everyextension.moc"
