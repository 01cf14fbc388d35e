// A trivial GTK4 window of 720x1280 with a drawing area: a background and four ellipses, drawn by Cairo. It says
// "frame" once the first frame has gone to the display.

#include <gtk/gtk.h>

#include <cstdio>

#include "Scene.h"

namespace {

void Draw(GtkDrawingArea*, cairo_t* context, int, int, gpointer) {
    constexpr double kFullTurn = 6.283185307179586;
    const auto setColor = [context](unsigned color) {
        cairo_set_source_rgb(context, SceneChannel(color, 16), SceneChannel(color, 8), SceneChannel(color, 0));
    };
    setColor(kSceneBackground);
    cairo_paint(context);
    setColor(kSceneHole);
    for (const SceneRect& hole : kSceneHoles) {
        cairo_arc(context, hole.x + hole.width / 2.0, hole.y + hole.height / 2.0, hole.width / 2.0, 0, kFullTurn);
        cairo_fill(context);
    }
}

void OnAfterPaint(GdkFrameClock*, gpointer) {
    std::puts("frame");
    std::fflush(stdout);
}

void OnActivate(GtkApplication* application, gpointer) {
    GtkWidget* const window = gtk_application_window_new(application);
    GtkWidget* const area = gtk_drawing_area_new();
    gtk_window_set_default_size(GTK_WINDOW(window), kSceneWidth, kSceneHeight);
    gtk_drawing_area_set_draw_func(GTK_DRAWING_AREA(area), Draw, nullptr, nullptr);
    gtk_window_set_child(GTK_WINDOW(window), area);
    gtk_window_present(GTK_WINDOW(window));
    g_signal_connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(OnAfterPaint), nullptr);
}

}  // namespace

int main(int argc, char* argv[]) {
    GtkApplication* const application = gtk_application_new(nullptr, G_APPLICATION_NON_UNIQUE);
    g_signal_connect(application, "activate", G_CALLBACK(OnActivate), nullptr);
    const int status = g_application_run(G_APPLICATION(application), argc, argv);
    g_object_unref(application);
    return status;
}
