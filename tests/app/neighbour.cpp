// Another program beside the application under test: a small window above all others at the lower right of the display.
// It tells on its output what is dragged over it ("over") and dropped on it ("dropped URL", a line each), and when it
// is pressed and pulled it offers the file that it was started with.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#include <QDrag>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QMimeData>
#include <QPainter>
#include <QRasterWindow>
#include <QScreen>
#include <QUrl>

#include <cstdio>

namespace {

void tell(const QByteArray& line) {
    std::printf("%s\n", line.constData());
    std::fflush(stdout);
}

class Neighbour : public QRasterWindow {
public:
    explicit Neighbour(const QString& file) : m_file(file) {
        setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint | Qt::WindowStaysOnTopHint);
        resize(220, 120);
        setPosition(screen()->geometry().bottomRight() - QPoint(width() + 30, height() + 60));
    }

protected:
    bool event(QEvent* event) override {
        switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove: {
            auto* const move = static_cast<QDragMoveEvent*>(event);
            move->setAccepted(move->mimeData()->hasUrls());
            tell("over");
            return true;
        }
        case QEvent::Drop: {
            auto* const drop = static_cast<QDropEvent*>(event);
            for (const QUrl& url : drop->mimeData()->urls())
                tell("dropped " + url.toEncoded());
            tell("done " + QByteArray::number(int(drop->proposedAction())));
            drop->acceptProposedAction();
            return true;
        }
        default:
            return QRasterWindow::event(event);
        }
    }
    void mouseMoveEvent(QMouseEvent* event) override {
        if (!(event->buttons() & Qt::LeftButton) || m_isDragging || m_file.isEmpty())
            return;
        m_isDragging = true;
        auto* const drag = new QDrag(this);
        auto* const data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(m_file)});
        drag->setMimeData(data);
        const Qt::DropAction done = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
        m_isDragging = false;
        tell("taken " + QByteArray::number(int(done)));
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.fillRect(QRect(QPoint(), size()), QColor(40, 70, 110));
        painter.setPen(Qt::white);
        painter.drawText(QRect(QPoint(), size()), Qt::AlignCenter, QStringLiteral("another program"));
    }

private:
    QString m_file;
    bool m_isDragging = false;
};

} // namespace

int main(int count, char** arguments) {
    QGuiApplication application(count, arguments);
    Neighbour window(count > 1 ? QString::fromLocal8Bit(arguments[1]) : QString());
    window.show();
    tell("there");
    return QGuiApplication::exec();
}
