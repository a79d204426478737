// What the tests of the reader's makers share: files of all formats in a home of their own, and the small pictures that
// are made of them.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"
#include "reader/Pictures.h"
#include "support/TestHome.h"

#include <QFile>
#include <QImage>
#include <QPainter>
#include <QProcess>

#include <vips/vips.h>

namespace lumbra {

inline bool isNear(const QColor& a, const QColor& b, int tolerance = 24) {
    return std::abs(a.red() - b.red()) <= tolerance && std::abs(a.green() - b.green()) <= tolerance
           && std::abs(a.blue() - b.blue()) <= tolerance && std::abs(a.alpha() - b.alpha()) <= tolerance;
}

// Red, green, blue and white quarters, from the upper left in reading order.
inline QImage quarters(QSize size) {
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    const int w = size.width() / 2, h = size.height() / 2;
    painter.fillRect(0, 0, w, h, Qt::red);
    painter.fillRect(w, 0, size.width() - w, h, Qt::green);
    painter.fillRect(0, h, w, size.height() - h, Qt::blue);
    painter.fillRect(w, h, size.width() - w, size.height() - h, Qt::white);
    return image;
}

inline QColor at(const QImage& image, double x, double y) {
    return image.pixelColor(int(image.width() * x), int(image.height() * y));
}

inline bool showsQuarters(const QImage& image) {
    return isNear(at(image, 0.25, 0.25), Qt::red) && isNear(at(image, 0.75, 0.25), Qt::green)
           && isNear(at(image, 0.25, 0.75), Qt::blue) && isNear(at(image, 0.75, 0.75), Qt::white);
}

class PictureFiles {
public:
    static constexpr QSize box{240, 240};
    static constexpr std::chrono::seconds limit{8};

    PictureFiles() {
        reader::Pictures::warmUp();
        if (!quarters({640, 480}).save(path("quarters.png")))
            qFatal("cannot save a picture");
    }

    QString path(const QByteArray& name) const { return m_home.path().child(name.toStdString()).toString(); }

    QByteArray read(const QByteArray& name) const {
        QFile file(path(name));
        if (!file.open(QIODevice::ReadOnly))
            qFatal("cannot read %s", name.constData());
        return file.readAll();
    }

    void write(const QByteArray& name, const QByteArray& bytes) const { m_home.file(name.toStdString(), bytes); }

    // A picture, or a film of two seconds, of the four quarters.
    void make(const QByteArray& name) const {
        static const QByteArrayList films{"mp4", "webm", "mov", "mkv", "avi", "ts"};
        if (QFile::exists(path(name)))
            return;
        if (films.contains(name.split('.').last()))
            run("ffmpeg", {"-loop", "1", "-t", "2", "-r", "10", "-i", "quarters.png", "-pix_fmt", "yuv420p", name});
        else
            run("convert", {"quarters.png", "-quality", "95", name});
    }

    // The formats that only libvips writes. To be made before anything is read: the reader forbids libvips some of it.
    void makeModernFormats() const {
        for (const char* name : {"a.heic", "a.avif", "a.jxl", "a.jp2"})
            convertByVips("quarters.png", name);
    }

    void convertByVips(const QByteArray& from, const QByteArray& to, int orientation = 1) const {
        vips_init("tests");
        VipsImage* const image =
            vips_image_new_from_file(path(from).toUtf8().constData(), "access", VIPS_ACCESS_SEQUENTIAL, nullptr);
        if (image)
            vips_image_set_int(image, VIPS_META_ORIENTATION, orientation);
        if (!image || vips_image_write_to_file(image, path(to + "[Q=90]").toUtf8().constData(), nullptr) != 0)
            qFatal("%s: %s", to.constData(), vips_error_buffer());
        g_object_unref(image);
    }

    void film(const QByteArray& name, const QByteArray& graph) const {
        run("ffmpeg", {"-filter_complex", graph, "-pix_fmt", "yuv420p", name});
    }

    // In the home, where the names are.
    void run(const QByteArray& program, QByteArrayList arguments) const {
        if (program == "ffmpeg")
            arguments = QByteArrayList{"-v", "error", "-y"} + arguments;
        QStringList texts;
        for (const QByteArray& argument : arguments)
            texts.append(QString::fromUtf8(argument));
        QProcess process;
        process.setWorkingDirectory(m_home.path().toString());
        process.start(QString::fromUtf8(program), texts);
        if (!process.waitForFinished(60'000) || process.exitCode() != 0)
            qFatal("%s: %s", program.constData(), process.readAllStandardError().constData());
    }

    QImage thumbnail(const QByteArray& name) const {
        const auto file = reader::OpenedFile::open(path(name).toUtf8());
        return file ? reader::Pictures::thumbnail(*file, box, limit) : QImage();
    }

    QSize pixels(const QByteArray& name) const {
        const auto file = reader::OpenedFile::open(path(name).toUtf8());
        return file ? reader::Pictures::pixels(*file) : QSize();
    }

private:
    TestHome m_home;
};

} // namespace lumbra
