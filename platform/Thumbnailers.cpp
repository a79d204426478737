// SPDX-License-Identifier: GPL-3.0-or-later
#include "Thumbnailers.h"

#include "Processes.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QUrl>

#include <gio/gio.h>

#include <algorithm>
#include <memory>

namespace lumbra {

namespace {

// Bounds of a program's means.
constexpr double longestTime = 5;                    // seconds
constexpr quint64 memory = quint64(2) << 30;         // bytes of address space
constexpr quint64 largestPicture = 32 * 1024 * 1024; // bytes

// What a page has room for, and more, is left out.
constexpr qsizetype mostWords = 256 * 1024; // bytes

// Programs that write the words of documents that no library reads, and what the words are called then.
struct WordsProgram {
    std::string_view extension;
    const char* program;
    const char* name;
};

constexpr WordsProgram wordsPrograms[] = {
    {"doc", "catdoc", "words.txt"},
    {"xls", "xls2csv", "words.csv"},
};

constexpr char group[] = "Thumbnailer Entry";

struct Free {
    void operator()(GKeyFile* file) const { g_key_file_unref(file); }
    void operator()(char* text) const { g_free(text); }
    void operator()(char** list) const { g_strfreev(list); }
};
using KeyFile = std::unique_ptr<GKeyFile, Free>;
using Text = std::unique_ptr<char, Free>;
using Texts = std::unique_ptr<char*, Free>;

QByteArray value(const KeyFile& file, const char* key) {
    return QByteArray(Text(g_key_file_get_string(file.get(), group, key, nullptr)).get());
}

bool isInstalled(const QByteArray& program) {
    return program.isEmpty() || Text(g_find_program_in_path(program.constData()));
}

QByteArray typeOf(const Location& file) {
    const Text content(g_content_type_guess(file.lastComponent().data(), nullptr, 0, nullptr));
    return QByteArray(Text(g_content_type_get_mime_type(content.get())).get());
}

struct Values {
    QByteArray address, path, picture, size;
};

// Split as a shell would, and only then filled in: no name can add an argument.
QList<QByteArray> arguments(const QByteArray& command, const Values& values) {
    int count = 0;
    char** split = nullptr;
    if (!g_shell_parse_argv(command.constData(), &count, &split, nullptr))
        return {};
    const Texts owned(split);
    QList<QByteArray> made;
    for (int i = 0; i < count; ++i) {
        const QByteArray word(split[i]);
        QByteArray filled;
        for (qsizetype at = 0; at < word.size(); ++at) {
            if (word[at] != '%' || at + 1 == word.size()) {
                filled += word[at];
                continue;
            }
            switch (word[++at]) {
            case 'u':
                filled += values.address;
                break;
            case 'i':
                filled += values.path;
                break;
            case 'o':
                filled += values.picture;
                break;
            case 's':
                filled += values.size;
                break;
            case '%':
                filled += '%';
                break;
            }
        }
        made.append(filled);
    }
    return made;
}

const WordsProgram* wordsProgramFor(const Location& file) {
    const QByteArray extension = QByteArray(file.extension().data(), qsizetype(file.extension().size())).toLower();
    const auto* const found =
        std::ranges::find(wordsPrograms, std::string_view(extension.constData()), &WordsProgram::extension);
    return found != std::end(wordsPrograms) && isInstalled(found->program) ? found : nullptr;
}

Processes::Options optionsIn(const Location& folder) {
    return {.timeout = longestTime,
            .outputLimit = mostWords,
            .folder = folder,
            .unset = {"DISPLAY", "WAYLAND_DISPLAY"},
            .memory = memory,
            .processor = quint64(longestTime),
            .fileSize = largestPicture};
}

} // namespace

Thumbnailers::Thumbnailers() {
    QStringList known; // a file in an earlier folder hides those of its name
    for (const QString& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation)) {
        const QDir registered(folder + QStringLiteral("/thumbnailers"));
        for (const QString& name : registered.entryList({QStringLiteral("*.thumbnailer")}, QDir::Files, QDir::Name)) {
            const KeyFile file(g_key_file_new());
            if (known.contains(name)
                || !g_key_file_load_from_file(file.get(), QFile::encodeName(registered.filePath(name)).constData(),
                                              G_KEY_FILE_NONE, nullptr))
                continue;
            known.append(name);
            Program program{value(file, "Exec"), {}};
            const Texts types(g_key_file_get_string_list(file.get(), group, "MimeType", nullptr, nullptr));
            for (char** type = types.get(); type && *type; ++type)
                program.types.emplace_back(*type);
            if (!program.command.isEmpty() && isInstalled(value(file, "TryExec")))
                m_programs.push_back(std::move(program));
        }
    }
}

const QByteArray* Thumbnailers::commandFor(const Location& file) const {
    if (m_programs.empty())
        return nullptr;
    const QByteArray type = typeOf(file);
    const auto found = std::ranges::find_if(m_programs, [&type](const Program& program) {
        return std::ranges::find(program.types, type) != program.types.end();
    });
    return found == m_programs.end() ? nullptr : &found->command;
}

void Thumbnailers::make(const Location& file, int side, const std::function<void(const Location& picture)>& use) const {
    const QByteArray* const command = commandFor(file);
    if (!command)
        return write(file, use);
    const QTemporaryDir folder; // readable to its owner only
    if (!folder.isValid())
        return;
    const Location picture = Location(QStringView(folder.path())).child("picture.png");
    const QList<QByteArray> words = arguments(*command, {.address = QUrl::fromLocalFile(file.toString()).toEncoded(),
                                                         .path = file.path(),
                                                         .picture = picture.path(),
                                                         .size = QByteArray::number(side)});
    if (words.isEmpty())
        return;
    const auto result = Processes::run(words.first(), words.mid(1), optionsIn(Location(QStringView(folder.path()))));
    if (result.succeeded() && QFile::exists(picture.toString()))
        use(picture);
}

void Thumbnailers::write(const Location& file, const std::function<void(const Location& words)>& use) {
    const WordsProgram* const program = wordsProgramFor(file);
    const QTemporaryDir folder;
    if (!program || !folder.isValid())
        return;
    const Location place = Location(QStringView(folder.path()));
    const auto result = Processes::run(program->program, {"-d", "utf-8", file.path()}, optionsIn(place));
    QFile words(place.child(program->name).toString());
    const bool isUseful = result.succeeded() || result.end == Processes::End::tooMuchOutput;
    if (isUseful && words.open(QIODevice::WriteOnly) && words.write(result.output) == result.output.size()) {
        words.close();
        use(place.child(program->name));
    }
}

} // namespace lumbra
