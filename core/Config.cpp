// SPDX-License-Identifier: GPL-3.0-or-later
#include "Config.h"

#include "CoreError.h"
#include "JsonFile.h"

#include <QDir>

#include <system_error>

namespace lumbra::LumbraConfig {

namespace {

constexpr char libraryVariable[] = "LUMBRA_LIBRARY";
constexpr char configVariable[] = "XDG_CONFIG_HOME";

} // namespace

Location file() {
    if (!qEnvironmentVariableIsSet(configVariable))
        return Location::home().child(".config").child("lumbra").child("config.json");
    const QString folder = QString::fromUtf8(qgetenv(configVariable));
    if (folder.isEmpty())
        return Location(QStringView(u"lumbra/config.json"));
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
    const auto ofEnvironment = Location::expandingTilde(QString::fromUtf8(qgetenv(libraryVariable)));
    if (!ofEnvironment.isEmpty())
        return ofEnvironment;
    const auto ofFile = Location::expandingTilde(contents().value(QLatin1String("library")).toString());
    return ofFile.isEmpty() ? suggestedLibrary() : ofFile;
}

void setLibrary(const Location& root) {
    if (root.isEmpty())
        throw CoreError(QString::fromStdString(std::make_error_code(std::errc::no_such_file_or_directory).message()));
    QJsonObject configuration = contents();
    configuration.insert(QLatin1String("library"), QDir::current().absoluteFilePath(root.toString()));
    const Location target = file();
    JsonFile::makeFolder(target.parent());
    JsonFile::write(target, configuration);
    JsonFile::makeFolder(root);
}

} // namespace lumbra::LumbraConfig
