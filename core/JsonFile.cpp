// SPDX-License-Identifier: GPL-3.0-or-later
#include "JsonFile.h"

#include "CoreError.h"
#include "platform/RegularFile.h"

#include <QJsonDocument>
#include <QSaveFile>

#include <filesystem>

namespace lumbra::JsonFile {

std::optional<QJsonObject> read(const Location& file, qint64 largest) {
    const auto bytes = RegularFile::bytes(file, largest);
    if (!bytes)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
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
