// Whether somebody still waits for the answer that is being made. Work that takes long asks between its steps.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lumbra::reader::Interruption {

// From now on, whatever arrives at the socket while a request is worked on is the word to stop, or the end.
void listenTo(int socket);

// May be asked at every step. It hears of the word some milliseconds late.
bool isRequested();

} // namespace lumbra::reader::Interruption
