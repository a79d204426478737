// The answers to requests about documents of pages. The document asked for last stays open: whoever looks at one of its
// pages wants the next one too.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/reader/Protocol.h"
#include "reader/OpenedFile.h"

#include <QPdfDocument>

#include <memory>
#include <span>

namespace lumbra::reader {

class PageAnswers {
public:
    // Each takes a request of its kind and the file that it is about; what does not fit into a few facts goes to the
    // arena. The answer's number is left to the caller.
    Answer pages(std::unique_ptr<OpenedFile> file, std::span<uchar> arena);
    Answer page(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena);
    Answer text(const Request& request, std::unique_ptr<OpenedFile> file, std::span<uchar> arena);

private:
    // The document reads from the file.
    struct Kept {
        std::unique_ptr<OpenedFile> file;
        std::unique_ptr<QPdfDocument> document;
    };

    QPdfDocument* documentOf(std::unique_ptr<OpenedFile> file);

    Kept m_kept;
};

} // namespace lumbra::reader
