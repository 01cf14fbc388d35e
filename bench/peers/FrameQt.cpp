// The full frame drawn with Qt's raster painter on a picture in memory: static texts, pictures with smooth scaling.

#include <QGuiApplication>
#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QStaticText>
#include <array>
#include <vector>

#include "Measure.h"
#include "Scene.h"

namespace {

QRect ToQt(const SceneRect& rect) {
    return {rect.x, rect.y, rect.width, rect.height};
}

void Frame(benchmark::State& state) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static std::array<char, 6> name{"bench"};
    static std::array<char*, 2> arguments{name.data(), nullptr};
    static int count = 1;
    static const QGuiApplication application(count, arguments.data());

    QImage image(kSceneWidth, kSceneHeight, QImage::Format_RGB32);
    QFont font(kSceneFont);
    font.setPixelSize(kSceneTextSize);
    std::vector<QStaticText> texts;
    for (const SceneText& text : kSceneTexts) {
        texts.emplace_back(text.text);
        texts.back().prepare(QTransform(), font);
    }
    std::vector<QImage> pictures;
    for (const ScenePicture& picture : kScenePictures) {
        const QImage decoded(QString(BREVANT_PACKAGE "images/") + picture.file);
        if (decoded.isNull()) return state.SkipWithError(picture.file);
        pictures.push_back(decoded.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    }

    MeasureEach(state, [&] {
        QPainter painter(&image);
        painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
        painter.fillRect(image.rect(), QColor::fromRgb(kSceneBackground));
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor::fromRgb(kSceneHole));
        for (const SceneRect& hole : kSceneHoles) painter.drawEllipse(ToQt(hole));
        for (const SceneRect& button : kSceneButtons) {
            QLinearGradient gradient(0, button.y, 0, button.y + button.height);
            gradient.setColorAt(0, QColor::fromRgb(kSceneButtonTop));
            gradient.setColorAt(1, QColor::fromRgb(kSceneButtonBottom));
            painter.setBrush(gradient);
            painter.drawRoundedRect(ToQt(button), kSceneCorner, kSceneCorner);
        }
        painter.setPen(QColor::fromRgb(kSceneInk));
        painter.setFont(font);
        for (std::size_t i = 0; i < texts.size(); ++i) {
            painter.drawStaticText(kSceneTexts[i].x, kSceneTexts[i].y, texts[i]);
        }
        for (std::size_t i = 0; i < pictures.size(); ++i) {
            painter.drawImage(ToQt(kScenePictures[i].place), pictures[i]);
        }
        painter.end();
        benchmark::DoNotOptimize(image.bits());
    });
}
BENCHMARK(Frame)->Name("frame|Qt6 raster");

}  // namespace
