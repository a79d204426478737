// SPDX-License-Identifier: GPL-3.0-or-later
#include "Clipboard.h"

#include "platform/FileTypes.h"
#include "platform/RegularFile.h"
#include "platform/Tasks.h"

#include <QBuffer>
#include <QImageWriter>

namespace lumbra::Clipboard {

namespace {

constexpr qsizetype mostAtOnce = 1000;  // files whose addresses are made well within a frame
constexpr qint64 largestPng = 64 << 20; // bytes that are handed on as they are
constexpr QSize largestPicture{4096, 4096};
constexpr QSize drawingSize{1024, 1024}; // a drawing has no pixels of its own

Pasteboard::Flavour text(const QByteArray& utf8) {
    return {QStringLiteral("text/plain"), utf8};
}

QByteArray extensionOf(const Location& file) {
    const std::string_view extension = file.extension();
    return QByteArray(extension.data(), qsizetype(extension.size())).toLower();
}

Pasteboard::Contents encoded(const QImage& picture) {
    Pasteboard::Contents flavours;
    // Most programs ask for the first and a few for the second; Qt would make either only when it is asked, and then on
    // the main thread.
    for (const char* const format : {"png", "tiff"}) {
        QBuffer buffer;
        QImageWriter writer(&buffer, format);
        if (qstrcmp(format, "png") == 0)
            writer.setQuality(80); // means how little time goes into making it small
        else
            writer.setCompression(1); // smaller, without loss
        if (writer.write(picture))
            flavours.append({QLatin1String("image/") + QLatin1String(format), buffer.data()});
    }
    return flavours;
}

void addPicture(const Location& file, Pasteboard& pasteboard, quint64 number, Reader& reader) {
    const bool isDrawing = extensionOf(file).startsWith("svg");
    reader.thumbnail(file, isDrawing ? drawingSize : largestPicture)
        .then(&pasteboard, [&pasteboard, number](const QImage& picture) {
            if (picture.isNull())
                return;
            Tasks::run(Tasks::Pool::userInitiated, [picture] {
                return encoded(picture);
            }).then(&pasteboard, [&pasteboard, number](const Pasteboard::Contents& flavours) {
                pasteboard.add(number, flavours);
            });
        });
}

void addPng(const Location& file, Pasteboard& pasteboard, quint64 number, Reader& reader) {
    Tasks::run(Tasks::Pool::userInitiated, [file] {
        return RegularFile::bytes(file, largestPng).value_or(QByteArray());
    }).then(&pasteboard, [&pasteboard, &reader, file, number](const QByteArray& bytes) {
        if (bytes.isEmpty())
            return addPicture(file, pasteboard, number, reader);
        pasteboard.add(number, {{QStringLiteral("image/png"), bytes}});
    });
}

Pasteboard::Contents filesOf(const QList<Location>& urls) {
    QByteArray list;
    QByteArray copied = "copy"; // and not cut, as file managers tell them apart
    QByteArray names;
    for (const Location& url : urls) {
        const QByteArray encodedUrl = url.toUrl().toEncoded();
        list += encodedUrl + "\r\n";
        copied += '\n' + encodedUrl;
        const std::string_view name = url.lastComponent();
        if (&url != &urls.front())
            names += '\n';
        names.append(name.data(), qsizetype(name.size()));
    }
    return {
        {QStringLiteral("text/uri-list"), list}, {QStringLiteral("x-special/gnome-copied-files"), copied}, text(names)};
}

Pasteboard::Contents pathsOf(const QList<Location>& urls) {
    QByteArrayList paths;
    paths.reserve(urls.size());
    for (const Location& url : urls)
        paths.append(url.path());
    return {text(paths.join('\n'))};
}

void supplyLater(const QList<Location>& urls, Pasteboard::Contents (*make)(const QList<Location>&),
                 Pasteboard& pasteboard, const std::function<void()>& stand) {
    const quint64 number = pasteboard.announce();
    Tasks::run(Tasks::Pool::userInitiated, [urls, make] {
        return make(urls);
    }).then(&pasteboard, [&pasteboard, number, stand](const Pasteboard::Contents& contents) {
        if (pasteboard.supply(number, contents))
            stand();
    });
}

} // namespace

void write(const QList<Location>& urls, Pasteboard& pasteboard, Reader& reader, const std::function<void()>& stand) {
    if (urls.size() > mostAtOnce)
        return supplyLater(urls, filesOf, pasteboard, stand);
    const quint64 number = pasteboard.set(filesOf(urls));
    stand();
    if (urls.size() != 1)
        return;
    const Location& lone = urls.first();
    const QByteArray extension = extensionOf(lone);
    if (extension == "png")
        addPng(lone, pasteboard, number, reader);
    else if (fileTypeOf({extension.data(), size_t(extension.size())}) == FileType::image)
        addPicture(lone, pasteboard, number, reader);
}

void writePaths(const QList<Location>& urls, Pasteboard& pasteboard) {
    if (urls.size() > mostAtOnce)
        return supplyLater(urls, pathsOf, pasteboard, [] {});
    pasteboard.set(pathsOf(urls));
}

void copyText(const QString& copied, Pasteboard& pasteboard) {
    pasteboard.set({text(copied.toUtf8())});
}

} // namespace lumbra::Clipboard
