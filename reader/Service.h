// The reader's one loop: takes a request, makes the answer, sends it, until the application hangs up.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "pages/PageAnswers.h"
#include "platform/reader/SharedBlock.h"

namespace lumbra::reader {

class Service {
public:
    // Both descriptors stay the caller's.
    Service(int socket, int memory);
    ~Service();

    Service(const Service&) = delete;
    Service& operator=(const Service&) = delete;

    // False when the block can't be reached.
    bool isReady() const { return m_block.memory() != nullptr; }

    // Greets, then answers one request after the other. Returns the process's exit code: 0 when the application hung
    // up, 1 after nonsense.
    int run();

private:
    Answer answer(const Request& request);
    bool send(const Answer& answer);

    int m_socket;
    SharedBlock m_block;
    PageAnswers m_pages;
};

} // namespace lumbra::reader
