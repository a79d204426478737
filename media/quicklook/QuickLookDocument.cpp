// SPDX-License-Identifier: GPL-3.0-or-later
#include "QuickLookDocument.h"

#include "platform/Phrases.h"
#include "platform/Tasks.h"

#include <QClipboard>
#include <QDesktopServices>
#include <QGuiApplication>
#include <QMetaEnum>
#include <QPointer>

#include <algorithm>

namespace lumbra {

namespace {

bool isReadAsText(DocumentKind kind) {
    return kind != DocumentKind::pages && kind != DocumentKind::webPage && kind != DocumentKind::other;
}

} // namespace

QuickLookDocument::QuickLookDocument(QObject* parent) : QObject(parent) {
    m_emptiness.setSingleShot(true);
    m_emptiness.setInterval(emptiness);
    connect(&m_emptiness, &QTimer::timeout, this, [this] { show(Stage::empty); });
}

QuickLookDocument::~QuickLookDocument() = default;

QString QuickLookDocument::Stamp::text() const {
    return QStringLiteral("%1|%2").arg(size).arg(modified.seconds, 0, 'f', QLocale::FloatingPointShortest);
}

void QuickLookDocument::setPath(const Location& path) {
    if (m_path == path)
        return;
    m_path = path;
    m_kind = documentKindOf(path);
    m_request = {};
    m_isLoading = m_isStale = false;
    m_emptiness.stop();
    m_stamp.reset();
    m_notice.clear();
    m_picture = {};
    m_text.setRows({});
    m_table.setRows({});
    m_pages.clear();
    show(Stage::nothing);
    Q_EMIT pathChanged();
    if (!path.isEmpty())
        load();
}

void QuickLookDocument::setPictureBox(const QSize& box) {
    if (m_pictureBox == box)
        return;
    const bool isLarger = box.width() > m_pictureBox.width() || box.height() > m_pictureBox.height();
    m_pictureBox = box;
    Q_EMIT pictureBoxChanged();
    if (isLarger && m_stage == Stage::picture && !m_isLoading)
        askForPicture();
}

QString QuickLookDocument::stageName() const {
    return QString::fromLatin1(QMetaEnum::fromType<Stage>().valueToKey(int(m_stage)));
}

bool QuickLookDocument::isProse() const {
    return m_kind != DocumentKind::source;
}

QString QuickLookDocument::facts() const {
    QStringList parts{documentKindInWords(m_path)};
    if (m_stamp) {
        parts.append(Phrases::bytes(m_stamp->size));
        parts.append(QStringLiteral("saved ") + Phrases::relativeTime(m_stamp->modified, Date::now()));
    }
    return parts.join(QStringLiteral(" · "));
}

void QuickLookDocument::openLink(const QString& address) {
    const QUrl url(address, QUrl::StrictMode);
    if (url.isValid() && (url.scheme() == QLatin1String("https") || url.scheme() == QLatin1String("http")))
        QDesktopServices::openUrl(url);
}

void QuickLookDocument::copy(const QString& words) {
    if (!words.isEmpty())
        QGuiApplication::clipboard()->setText(words);
}

// The folder is watched, since a file that is replaced is another file to the system.
void QuickLookDocument::watch(const Location& folder) {
    if (m_events && folder == m_watched)
        return;
    m_watched = folder;
    FileEvents::Options options;
    options.enters = [](std::string_view) { return false; };
    options.started = [self = QPointer(this)] { // what happened since the file was read
        Tasks::postToMain([self] {
            if (self)
                self->load();
        });
    };
    m_events = std::make_unique<FileEvents>(
        QList<Location>{folder}, std::move(options), [self = QPointer(this)](const QList<FileEvent>& events) {
            Tasks::postToMain([self, events] {
                const auto isOurs = [&self](const FileEvent& event) {
                    return event.path.lastComponent() == self->m_path.lastComponent()
                           || (event.flags & FileEvent::mustScan) != 0;
                };
                if (self && std::any_of(events.begin(), events.end(), isOurs))
                    self->load();
            });
        });
}

QuickLookDocument::Read QuickLookDocument::readFile(const Location& path, DocumentKind kind,
                                                    const std::optional<Stamp>& known) {
    Read read{.folder = path.parent().canonical(), .stamp = std::nullopt, .content = std::nullopt};
    const std::optional<FileFacts> facts = FileFacts::of(path.canonical());
    if (!facts || !facts->isRegularFile)
        return read;
    read.stamp = Stamp{facts->size, facts->modified};
    if (read.stamp != known && isReadAsText(kind))
        read.content = DocumentContent::read(path, kind);
    return read;
}

void QuickLookDocument::load() {
    if (m_isLoading) {
        m_isStale = true;
        return;
    }
    m_isLoading = true;
    m_isStale = false;
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    Tasks::run(Tasks::Pool::userInitiated, [path = m_path, kind = m_kind, known = m_stamp] {
        return readFile(path, kind, known);
    }).then(this, [this, token = stop.get_token()](const Read& read) {
        if (!token.stop_requested())
            take(read);
    });
}

void QuickLookDocument::take(const Read& read) {
    watch(read.folder);
    const bool isFirst = m_stage == Stage::nothing;
    const bool isUnread = !read.stamp || (isReadAsText(m_kind) && read.stamp != m_stamp && !read.content);
    if (isUnread && isFirst)
        return show(Stage::broken);
    if (isUnread || read.stamp == m_stamp)
        return endLoad();
    m_stamp = read.stamp;
    const bool isEmpty = m_stamp->size == 0 || (read.content && read.content->isEmpty());
    if (isEmpty && !isFirst) {
        m_emptiness.start();
        return endLoad();
    }
    m_emptiness.stop();
    if (isEmpty)
        return show(Stage::empty);
    switch (m_kind) {
    case DocumentKind::pages:
        return loadPages();
    case DocumentKind::webPage:
        return show(Stage::webPage);
    case DocumentKind::other:
        return loadPicture();
    default:
        break;
    }
    m_notice = read.content->notice;
    m_text.setRows(read.content->rows);
    m_table.setRows(read.content->cells);
    show(m_kind == DocumentKind::table ? Stage::table : Stage::text);
}

void QuickLookDocument::loadPages() {
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    Reader::shared()
        .pages(m_path, Reader::Urgency::visible, stop.get_token())
        .then(this, [this, token = stop.get_token()](const std::optional<Reader::Pages>& pages) {
            if (token.stop_requested())
                return;
            if (pages && !pages->isLocked) {
                m_pages.setPages(m_path, m_stamp ? m_stamp->text() : QString(), pages->sizes);
                show(Stage::pages);
            } else if (pages) {
                show(Stage::locked);
            } else if (m_stage == Stage::pages) {
                endLoad(); // it is being written: what was there is better than nothing
            } else {
                loadPicture();
            }
        });
}

void QuickLookDocument::loadPicture() {
    if (m_pictureBox.isEmpty())
        return show(Stage::picture);
    askForPicture();
}

void QuickLookDocument::askForPicture() {
    m_isLoading = true;
    const std::stop_source stop;
    m_request = MediaRequest(stop);
    const auto ready = [this, self = QPointer(this), token = stop.get_token()](const QImage& picture) {
        if (!self || token.stop_requested())
            return;
        if (!picture.isNull())
            m_picture = picture;
        const bool isBroken = picture.isNull() && m_kind == DocumentKind::pages && m_picture.isNull();
        show(isBroken ? Stage::broken : Stage::picture);
    };
    Reader::shared()
        .thumbnail(m_path, m_pictureBox, Reader::Urgency::visible, stop.get_token())
        .then(this, [this, ready, token = stop.get_token()](const QImage& picture) {
            if (picture.isNull())
                m_registered.ask(m_path, std::max(m_pictureBox.width(), m_pictureBox.height()), token, ready);
            else
                ready(picture);
        });
}

void QuickLookDocument::show(Stage stage) {
    m_stage = stage;
    ++m_version;
    Q_EMIT changed();
    endLoad();
}

void QuickLookDocument::endLoad() {
    m_isLoading = false;
    if (std::exchange(m_isStale, false))
        load();
}

} // namespace lumbra
