#include "base/Error.h"
#include "gallery/GalleryWindow.h"
#include "gallery/Screenshots.h"

#include <QApplication>

#include <cstdio>

// display-gallery: a window with all displays.
// display-gallery --screenshots DIR: pictures of them, also without a screen (QT_QPA_PLATFORM=offscreen).

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    const bool screenshots = arguments.size() == 3 && arguments.at(1) == QLatin1String("--screenshots");
    if (arguments.size() > 1 && !screenshots) {
        std::fputs("Usage: display-gallery [--screenshots DIR]\n", stderr);
        return 2;
    }
    try {
        if (screenshots)
            return writeScreenshots(arguments.at(2)) ? 0 : 1;
        GalleryWindow window;
        window.resize(1280, 800);
        window.show();
        return QApplication::exec();
    } catch (const TError& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
