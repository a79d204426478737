// SPDX-License-Identifier: GPL-3.0-or-later
#include "Config.h"

#include "JsonFile.h"

#include <QDir>

namespace lumbra::LumbraConfig {

namespace {

constexpr char libraryVariable[] = "LUMBRA_LIBRARY";
constexpr char configVariable[] = "XDG_CONFIG_HOME";

} // namespace

Location file() {
    if (!qEnvironmentVariableIsSet(configVariable))
        return Location::home().child(".config").child("lumbra").child("config.json");
    const QByteArray folder = qgetenv(configVariable);
    if (folder.isEmpty())
        return Location(QByteArray("lumbra/config.json"));
    return Location(folder).child("lumbra").child("config.json");
}

QJsonObject contents() {
    return JsonFile::read(file()).value_or(QJsonObject());
}

Location suggestedLibrary() {
    return Location::home().child("Lumbra");
}

bool isConfigured() {
    return qEnvironmentVariableIsSet(libraryVariable) || file().exists();
}

Location library() {
    const QString ofEnvironment = QString::fromUtf8(qgetenv(libraryVariable));
    if (!ofEnvironment.isEmpty())
        return Location::expandingTilde(ofEnvironment);
    const QString ofFile = contents().value(QLatin1String("library")).toString();
    if (!ofFile.isEmpty())
        return Location::expandingTilde(ofFile);
    return suggestedLibrary();
}

void setLibrary(const Location& root) {
    QJsonObject configuration = contents();
    configuration.insert(QLatin1String("library"), QDir::current().absoluteFilePath(root.toString()));
    const Location target = file();
    JsonFile::makeFolder(target.parent());
    JsonFile::write(target, configuration);
    JsonFile::makeFolder(root);
}

} // namespace lumbra::LumbraConfig
