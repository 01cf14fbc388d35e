// A trivial Qt6 window of 720x1280: a background and four ellipses, drawn by Qt's raster painter. It says "frame" once
// the first frame has gone to the display.

#include <QGuiApplication>
#include <QPainter>
#include <QRasterWindow>
#include <QTimer>
#include <cstdio>

#include "Scene.h"

namespace {

class HolesWindow final : public QRasterWindow {
protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.fillRect(QRect(0, 0, width(), height()), QColor::fromRgb(kSceneBackground));
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(kSceneHole));
        for (const SceneRect& hole : kSceneHoles) painter.drawEllipse(hole.x, hole.y, hole.width, hole.height);
        // The backing store is flushed when this handler has returned.
        QTimer::singleShot(0, [] {
            std::puts("frame");
            std::fflush(stdout);
        });
    }
};

}  // namespace

int main(int argc, char* argv[]) {
    const QGuiApplication application(argc, argv);
    HolesWindow window;
    window.resize(kSceneWidth, kSceneHeight);
    window.show();
    return QGuiApplication::exec();
}
