// SPDX-License-Identifier: GPL-3.0-or-later
#include "StateStore.h"

#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QSaveFile>

namespace lumbra::StateStore {

namespace {

// A state file of this size lists a hundred thousand names; anything larger is not one.
constexpr qint64 largestFile = 16 * 1024 * 1024;

Location folderIn(const Location& root) {
    return root.child(".lumbra");
}

QString fileIn(const Location& root) {
    return folderIn(root).child("library.json").toString();
}

} // namespace

std::optional<LibraryState> load(const Location& root) {
    QFile file(fileIn(root));
    if (!file.open(QIODevice::ReadOnly))
        return std::nullopt;
    const QByteArray bytes = file.read(largestFile + 1);
    if (bytes.size() > largestFile)
        return std::nullopt;
    const QJsonDocument document = QJsonDocument::fromJson(bytes);
    if (!document.isObject())
        return std::nullopt;
    return LibraryState::fromJson(document.object());
}

void save(const LibraryState& state, const Location& root) {
    QDir().mkpath(folderIn(root).toString());
    QSaveFile file(fileIn(root));
    if (!file.open(QIODevice::WriteOnly))
        return;
    const QByteArray bytes = QJsonDocument(state.toJson()).toJson(QJsonDocument::Indented);
    if (file.write(bytes) == bytes.size())
        file.commit();
}

} // namespace lumbra::StateStore
