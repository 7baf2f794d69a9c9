#include "gallery/StylePopups.h"
#include "gallery/StyleStates.h"
#include "gallery/StyleViews.h"
#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QPixmap>

#include <cstdio>

// style-gallery: windows with every control under the dark sheet.
// style-gallery --screenshots DIR: pictures of them under every sheet, also without a screen
// (QT_QPA_PLATFORM=offscreen).

namespace {

bool photograph(QWidget& widget, const QString& path)
{
    widget.show();
    QApplication::processEvents();
    if (widget.grab().save(path))
        return true;
    std::fprintf(stderr, "Cannot write %s\n", qPrintable(path));
    return false;
}

void applySheet(const QString& scheme)
{
    QFile file(QStringLiteral(":/styles/%1.css").arg(scheme));
    if (file.open(QIODevice::ReadOnly))
        qApp->setStyleSheet(QString::fromUtf8(file.readAll()));
}

bool photographComboList(const QString& path)
{
    QComboBox combo;
    combo.addItems({QStringLiteral("Bruce"), QStringLiteral("Naughton"), QStringLiteral("Tilt test")});
    combo.show();
    combo.showPopup();
    QWidget* list = QApplication::activePopupWidget();
    return list && photograph(*list, path);
}

bool writeScheme(const QString& scheme, const QDir& folder)
{
    applySheet(scheme);
    const auto path = [&](const QString& name) {
        return folder.filePath(QStringLiteral("%1-%2.png").arg(scheme, name));
    };
    const auto states = makeStatesPage();
    const auto views = makeViewsPage();
    const auto named = makeNamedPage();
    views->resize(1280, 800);
    named->resize(1280, 800);
    bool ok = photograph(*states, path(QStringLiteral("states")));
    ok &= photograph(*views, path(QStringLiteral("views")));
    ok &= photograph(*named, path(QStringLiteral("named")));
    for (const TStylePopup& popup : makePopups())
        ok &= photograph(*popup.widget, path(popup.name));
    return photographComboList(path(QStringLiteral("list"))) && ok;
}

int writeAll(const QString& folder)
{
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "Cannot make the folder %s\n", qPrintable(folder));
        return 1;
    }
    bool ok = true;
    for (const char* scheme : {"dark", "dark-vet", "light"})
        ok &= writeScheme(QLatin1String(scheme), QDir(folder));
    return ok ? 0 : 1;
}

int showAll()
{
    applySheet(QStringLiteral("dark"));
    const auto states = makeStatesPage();
    const auto views = makeViewsPage();
    const auto named = makeNamedPage();
    for (QWidget* page : {states.get(), views.get(), named.get()})
        page->show();
    return QApplication::exec();
}

} // namespace

int main(int argc, char* argv[])
{
    QApplication application(argc, argv);
    initResources();
    QApplication::setStyle(new DarkStyle);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() == 1)
        return showAll();
    if (arguments.size() == 3 && arguments.at(1) == QLatin1String("--screenshots"))
        return writeAll(arguments.at(2));
    std::fputs("Usage: style-gallery [--screenshots DIR]\n", stderr);
    return 2;
}
