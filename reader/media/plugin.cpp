// SPDX-License-Identifier: GPL-3.0-or-later
#include "MediaAnswers.h"
#include "reader/Interruption.h"

Q_DECL_EXPORT lumbra::reader::FilmDecoder* lumbra::reader::lumbraFilmDecoder(IsInterrupted isInterrupted) {
    Interruption::follow(isInterrupted);
    static MediaAnswers decoder;
    return &decoder;
}
