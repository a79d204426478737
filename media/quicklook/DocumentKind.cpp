// SPDX-License-Identifier: GPL-3.0-or-later
#include "DocumentKind.h"

#include "platform/FileTypes.h"

#include <algorithm>
#include <array>

namespace lumbra {

namespace {

struct Row {
    std::string_view extension;
    DocumentKind kind;
    const char* words;
};

constexpr std::array rows{
    Row{"pdf", DocumentKind::pages, "PDF document"},
    Row{"ai", DocumentKind::pages, "Illustrator document"},
    Row{"txt", DocumentKind::text, "Plain text"},
    Row{"text", DocumentKind::text, "Plain text"},
    Row{"log", DocumentKind::source, "Log"},
    Row{"json", DocumentKind::source, "JSON text"},
    Row{"md", DocumentKind::markdown, "Markdown text"},
    Row{"markdown", DocumentKind::markdown, "Markdown text"},
    Row{"csv", DocumentKind::table, "Table of comma-separated values"},
    Row{"tsv", DocumentKind::table, "Table of tab-separated values"},
    Row{"srt", DocumentKind::subtitles, "Subtitles"},
    Row{"vtt", DocumentKind::subtitles, "Subtitles"},
    Row{"html", DocumentKind::webPage, "Web page"},
    Row{"htm", DocumentKind::webPage, "Web page"},
    Row{"rtf", DocumentKind::other, "Rich text document"},
    Row{"docx", DocumentKind::other, "Word document"},
    Row{"doc", DocumentKind::other, "Word document"},
    Row{"xlsx", DocumentKind::other, "Excel workbook"},
    Row{"xls", DocumentKind::other, "Excel workbook"},
    Row{"pptx", DocumentKind::other, "PowerPoint presentation"},
    Row{"key", DocumentKind::other, "Keynote presentation"},
    Row{"pages", DocumentKind::other, "Pages document"},
    Row{"numbers", DocumentKind::other, "Numbers spreadsheet"},
    Row{"zip", DocumentKind::other, "ZIP archive"},
    Row{"psd", DocumentKind::other, "Photoshop document"},
    Row{"sketch", DocumentKind::other, "Sketch document"},
    Row{"fig", DocumentKind::other, "Figma document"},
    Row{"lottie", DocumentKind::other, "Lottie animation"},
    Row{"blend", DocumentKind::other, "Blender scene"},
    Row{"usdz", DocumentKind::other, "USDZ model"},
    Row{"glb", DocumentKind::other, "glTF model"},
    Row{"obj", DocumentKind::other, "OBJ model"},
    Row{"fbx", DocumentKind::other, "FBX model"},
};

const Row* rowOf(const Location& file) {
    const SmallExtension extension(file.lastComponent());
    const auto found = std::ranges::find(rows, extension.view(), &Row::extension);
    return found == rows.end() ? nullptr : &*found;
}

} // namespace

DocumentKind documentKindOf(const Location& file) {
    const Row* const row = rowOf(file);
    return row ? row->kind : DocumentKind::other;
}

QString documentKindInWords(const Location& file) {
    if (const Row* const row = rowOf(file))
        return QString::fromLatin1(row->words);
    const std::string_view extension = file.extension();
    if (extension.empty())
        return QStringLiteral("File");
    return QString::fromUtf8(extension.data(), qsizetype(extension.size())).toUpper() + QStringLiteral(" file");
}

} // namespace lumbra
