// SPDX-License-Identifier: GPL-3.0-or-later
#include "JsonFile.h"

#include "CoreError.h"

#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

#include <fcntl.h>
#include <sys/stat.h>

#include <filesystem>

namespace lumbra::JsonFile {

std::optional<QJsonObject> read(const Location& file, qint64 largest) {
    // Not by QFile's own open, which would wait for the other end of a pipe that somebody left under the name.
    const int descriptor = ::open(file.path().constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    QFile opened;
    opened.open(descriptor, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle);
    struct stat status;
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode) || status.st_size > largest)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(opened.read(largest));
    if (!document.isObject())
        return std::nullopt;
    return document.object();
}

void write(const Location& file, const QJsonObject& object) {
    QSaveFile saved(file.toString());
    if (!saved.open(QIODevice::WriteOnly))
        throw CoreError(saved.errorString());
    saved.write(QJsonDocument(object).toJson(QJsonDocument::Indented));
    if (!saved.commit())
        throw CoreError(saved.errorString());
}

void makeFolder(const Location& folder) {
    std::error_code error;
    std::filesystem::create_directories(folder.view(), error);
    if (error)
        throw CoreError(QString::fromStdString(error.message()));
}

} // namespace lumbra::JsonFile
