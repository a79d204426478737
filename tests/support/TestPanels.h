// Panels for tests of what asks for files and folders: they keep what was asked, and the test answers.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Panels.h"

namespace lumbra {

class TestPanels : public Panels {
public:
    void openFiles(const QString& prompt, std::function<void(QList<Location>)> chosen) override {
        asked = QStringLiteral("open");
        button = prompt;
        answerFiles = std::move(chosen);
    }
    void chooseFolder(const QString& prompt, const QString& words, const std::optional<Location>& where,
                      std::function<void(std::optional<Location>)> chosen) override {
        asked = QStringLiteral("folder");
        button = prompt;
        message = words;
        start = where;
        answerFolder = std::move(chosen);
    }
    void save(const QString& given, const Location& where, std::function<void(Location)> chosen) override {
        asked = QStringLiteral("save");
        name = given;
        start = where;
        answerPath = std::move(chosen);
    }

    QString asked;
    QString button;
    QString message;
    QString name;
    std::optional<Location> start;
    std::function<void(QList<Location>)> answerFiles;
    std::function<void(std::optional<Location>)> answerFolder;
    std::function<void(Location)> answerPath;
};

} // namespace lumbra
