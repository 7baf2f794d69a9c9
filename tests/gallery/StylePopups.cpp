#include "gallery/StylePopups.h"

#include <QActionGroup>
#include <QColorDialog>
#include <QMenu>
#include <QMessageBox>
#include <QProgressDialog>

namespace {

QAction* checkable(QMenu& menu, const QString& text, bool checked)
{
    QAction* action = menu.addAction(text);
    action->setCheckable(true);
    action->setChecked(checked);
    return action;
}

std::unique_ptr<QWidget> leadMenu()
{
    auto menu = std::make_unique<QMenu>();
    checkable(*menu, QStringLiteral("I"), true);
    checkable(*menu, QStringLiteral("aVR"), false);
    checkable(*menu, QStringLiteral("V1"), true)->setEnabled(false);
    menu->addSeparator();
    menu->addMenu(QStringLiteral("Color scheme"));
    auto* group = new QActionGroup(menu.get());
    group->addAction(checkable(*menu, QStringLiteral("Black"), true));
    group->addAction(checkable(*menu, QStringLiteral("Light"), false));
    QAction* print = menu->addAction(QIcon(QStringLiteral(":/res/print")), QStringLiteral("Print..."));
    print->setShortcut(Qt::Key_F4);
    menu->setActiveAction(menu->actions().at(1));
    return menu;
}

std::unique_ptr<QWidget> message(QMessageBox::Icon icon)
{
    return std::make_unique<QMessageBox>(
        icon, QStringLiteral("Warning"),
        QStringLiteral("There is not enough free space on disk.\nPlease free at least 50 MB."),
        QMessageBox::Ok | QMessageBox::Cancel);
}

std::unique_ptr<QWidget> progress()
{
    auto dialog =
        std::make_unique<QProgressDialog>(QStringLiteral("Please wait..."), QStringLiteral("Cancel"), 0, 100);
    dialog->setValue(40);
    return dialog;
}

} // namespace

std::vector<TStylePopup> makePopups()
{
    std::vector<TStylePopup> popups;
    popups.push_back({QStringLiteral("menu"), leadMenu()});
    popups.push_back({QStringLiteral("information"), message(QMessageBox::Information)});
    popups.push_back({QStringLiteral("question"), message(QMessageBox::Question)});
    popups.push_back({QStringLiteral("warning"), message(QMessageBox::Warning)});
    popups.push_back({QStringLiteral("critical"), message(QMessageBox::Critical)});
    popups.push_back({QStringLiteral("progress"), progress()});
    auto colours = std::make_unique<QColorDialog>();
    colours->setOption(QColorDialog::DontUseNativeDialog);
    popups.push_back({QStringLiteral("colours"), std::move(colours)});
    return popups;
}
