// SPDX-License-Identifier: GPL-3.0-or-later
#include "RegisteredThumbnails.h"

#include "platform/EndedProcesses.h"
#include "platform/Tasks.h"
#include "platform/Thumbnailers.h"

namespace lumbra {

namespace {

constexpr int mostRunning = 2; // programs

} // namespace

void RegisteredThumbnails::ask(const Location& file, int side, std::stop_token stop,
                               std::function<void(const QImage&)> ready) {
    std::erase_if(m_wishes, [](const Wish& wish) { return wish.stop.stop_requested(); });
    m_wishes.push_back({file, side, std::move(stop), std::move(ready)});
    startNext();
}

void RegisteredThumbnails::startNext() {
    while (m_running < mostRunning && !m_wishes.empty()) {
        const Wish wish = std::move(m_wishes.back());
        m_wishes.pop_back();
        if (wish.stop.stop_requested())
            continue;
        ++m_running;
        Tasks::run(Tasks::Pool::lasting, [&reader = m_reader, file = wish.file, side = wish.side] {
            QImage image;
            // Where the readers hang the programs would too.
            if (EndedProcesses::hangAt(file.path()))
                return image;
            // Read anew each time: programs come and go, and this is rare.
            Thumbnailers().make(file, side, [&](const Location& picture) {
                // Not to be taken back: a request that is would never be done.
                QFuture<QImage> task = reader.thumbnail(picture, QSize(side, side));
                task.waitForFinished();
                image = task.resultCount() > 0 ? task.result() : QImage();
            });
            return image;
        }).then(this, [this, ready = wish.ready](const QImage& image) {
            --m_running;
            ready(image);
            startNext();
        });
    }
}

} // namespace lumbra
