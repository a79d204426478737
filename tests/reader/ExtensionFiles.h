// A file of the four quarters, or of a few words, for every extension that a file of the library may have.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "MadeFiles.h"
#include "PictureFiles.h"

#include <QHash>
#include <QPdfWriter>

namespace lumbra {

class ExtensionFiles : public PictureFiles {
public:
    // To be called before anything is read.
    void prepare() {
        makeModernFormats();
        m_png = read("quarters.png");
        run("ffmpeg", {"-f", "lavfi", "-i", "sine=d=1", "-ac", "1", "-ar", "8000", "tone.wav"});
    }

    void makeFile(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, void (ExtensionFiles::*)(const QByteArray&, const QByteArray&) const> makers =
            makersByExtension();
        if (const auto maker = makers.value(extension))
            (this->*maker)(extension, name);
        else
            run("convert", {"quarters.png", "-quality", "95", name});
    }

private:
    using Maker = void (ExtensionFiles::*)(const QByteArray&, const QByteArray&) const;

    static QHash<QByteArray, Maker> makersByExtension() {
        QHash<QByteArray, Maker> makers;
        const auto use = [&makers](Maker maker, std::initializer_list<const char*> extensions) {
            for (const char* extension : extensions)
                makers.insert(extension, maker);
        };
        using Self = ExtensionFiles;
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
        use(&Self::makeAnimation, {"lottie"});
        use(&Self::makeOther, {"mid", "midi", "doc", "xls", "usdz", "glb", "obj", "fbx"});
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

    void makeAnimation(const QByteArray&, const QByteArray& name) const { made::quarteredAnimation(path(name)); }

    void makeScene(const QByteArray&, const QByteArray& name) const { write(name, made::blend(quarters({240, 180}))); }

    void makeOther(const QByteArray& extension, const QByteArray& name) const {
        static const QHash<QByteArray, QByteArray> starts{
            {"mid", QByteArray("MThd\0\0\0\6\0\0\0\1\0\x60", 14)},
            {"midi", QByteArray("MThd\0\0\0\6\0\0\0\1\0\x60", 14)},
            {"doc", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"},
            {"xls", "\xd0\xcf\x11\xe0\xa1\xb1\x1a\xe1"},
            {"usdz", "PK\3\4"},
            {"glb", "glTF"},
            {"obj", "v 0 0 0\nv 1 0 0\nv 0 1 0\nf 1 2 3\n"},
            {"fbx", "Kaydara FBX Binary  "},
        };
        write(name, starts.value(extension) + QByteArray(512, extension == "obj" ? '\n' : '\0'));
    }

    // Of a film of the quarters, for the container that the extension stands for.
    static QByteArrayList filmOptions(const QByteArray& extension) {
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

    QByteArray m_png;
};

} // namespace lumbra
