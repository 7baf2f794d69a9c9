#include "gallery/StyleViews.h"

#include <QCalendarWidget>
#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QTableWidget>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace {

QString numbered(const char* text, int number)
{
    return QStringLiteral("%1 %2").arg(QLatin1String(text)).arg(number);
}

QWidget* categories()
{
    auto* list = new QListWidget;
    list->setObjectName(QStringLiteral("listCategory"));
    list->addItems({QStringLiteral("Patient"), QStringLiteral("Risk factors"), QStringLiteral("Study info"),
                    QStringLiteral("Protocol")});
    list->setCurrentRow(1);
    return list;
}

QWidget* checkList()
{
    auto* list = new QListWidget;
    for (int number = 0; number < 20; ++number) {
        auto* item = new QListWidgetItem(numbered("Conclusion", number), list);
        item->setCheckState(static_cast<Qt::CheckState>(number % 3));
    }
    list->item(3)->setFlags(Qt::NoItemFlags);
    return list;
}

QWidget* tree()
{
    auto* made = new QTreeWidget;
    made->setHeaderLabels({QStringLiteral("Patient"), QStringLiteral("Date")});
    made->setAlternatingRowColors(true);
    made->setSortingEnabled(true);
    for (int number = 0; number < 4; ++number) {
        auto* parent = new QTreeWidgetItem(made, {numbered("Patient", number), QStringLiteral("29/2/2024")});
        new QTreeWidgetItem(parent, {numbered("Study", number), QStringLiteral("9:30")});
        parent->setExpanded(number < 2);
    }
    made->setCurrentItem(made->topLevelItem(1));
    return made;
}

QWidget* table()
{
    auto* made = new QTableWidget(6, 4);
    made->setAlternatingRowColors(true);
    for (int row = 0; row < 6; ++row) {
        for (int column = 0; column < 4; ++column)
            made->setItem(row, column, new QTableWidgetItem(QString::number(row * 10 + column)));
    }
    made->setCurrentCell(2, 1);
    return made;
}

QWidget* group()
{
    auto* made = new QGroupBox(QStringLiteral("Heart rate"));
    made->setCheckable(true);
    auto* layout = new QVBoxLayout(made);
    layout->addWidget(new QRadioButton(QStringLiteral("Bluetooth")));
    layout->addWidget(new QCheckBox(QStringLiteral("High rate")));
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    layout->addWidget(line);
    layout->addWidget(new QLineEdit(QStringLiteral("COM3")));
    return made;
}

QWidget* scrolled()
{
    auto* area = new QScrollArea;
    auto* content = new QWidget;
    auto* layout = new QVBoxLayout(content);
    for (int number = 0; number < 12; ++number)
        layout->addWidget(new QCheckBox(numbered("A risk factor with a rather long name, number", number)));
    area->setWidget(content);
    return area;
}

QWidget* tabs()
{
    auto* made = new QTabWidget;
    made->addTab(scrolled(), QStringLiteral("Events"));
    made->addTab(new QPlainTextEdit(QStringLiteral("Conclusion")), QStringLiteral("Conclusion"));
    made->addTab(new QWidget, QStringLiteral("Closed"));
    made->setTabEnabled(2, false);
    return made;
}

QWidget* scrollBar(Qt::Orientation orientation)
{
    auto* made = new QScrollBar(orientation);
    made->setRange(0, 100);
    made->setPageStep(20);
    made->setValue(30);
    return made;
}

QWidget* buttonBox()
{
    auto* box =
        new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Help);
    box->button(QDialogButtonBox::Ok)->setDefault(true);
    return box;
}

QWidget* labelled(const char* name, const char* text, const char* style = "")
{
    auto* label = new QLabel(QString::fromUtf8(text));
    label->setObjectName(QLatin1String(name));
    label->setStyleSheet(QLatin1String(style));
    return label;
}

QWidget* named(const char* name, const char* text, const char* icon)
{
    auto* button = new QPushButton(QIcon(QLatin1String(icon)), QLatin1String(text));
    button->setObjectName(QLatin1String(name));
    button->setIconSize({24, 24});
    return button;
}

QWidget* launcherColumn()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    auto* title = labelled("lblTitle", "ECG");
    QFont large = title->font();
    large.setPointSize(24);
    title->setFont(large);
    layout->addWidget(title);
    layout->addWidget(labelled("lblVersion", "v 1.27c"));
    layout->addWidget(named("btnNewStudyStress", "New stress test", ":/res/stress-test"));
    layout->addWidget(named("btnStartStress", "Start", ":/res/start"));
    layout->addWidget(named("btnNewStudyEcg", "New ECG", ":/res/ecg"));
    layout->addWidget(named("btnStartEcg", "Start", ":/res/start"));
    layout->itemAt(layout->count() - 1)->widget()->setEnabled(false);
    layout->addWidget(named("btnOpenStudy", "Open study", ":/res/open-study"));
    layout->addWidget(named("btnOpenOK", "Open", ":/res/open-study"));
    layout->addStretch();
    return column;
}

QFrame* card(const char* name, const char* icon, QWidget* value)
{
    auto* frame = new QFrame;
    frame->setObjectName(QLatin1String(name));
    auto* layout = new QHBoxLayout(frame);
    auto* picture = new QLabel;
    picture->setPixmap(QIcon(QLatin1String(icon)).pixmap(32, 32));
    layout->addWidget(picture);
    layout->addWidget(value);
    return frame;
}

QWidget* monitorColumn()
{
    auto* column = new QWidget;
    auto* layout = new QVBoxLayout(column);
    layout->addWidget(labelled("lblPatientName", "de la Cruz Rodríguez, María José"));
    layout->addWidget(
        labelled("", "Simulated ECG", "background: white; color: red; font-weight: bold; font-size: 15px"));
    auto* icons = labelled("", "", "background:none");
    static_cast<QLabel*>(icons)->setPixmap(QIcon(QStringLiteral(":/res/low-battery")).pixmap(50, 50));
    layout->addWidget(icons);
    auto* connecting = labelled("", "", "background:none");
    static_cast<QLabel*>(connecting)->setPixmap(QIcon(QStringLiteral(":/res/connecting")).pixmap(50, 50));
    layout->addWidget(connecting);
    layout->addStretch();
    auto* bottom = new QFrame;
    bottom->setObjectName(QStringLiteral("frameBottom"));
    auto* row = new QHBoxLayout(bottom);
    row->addWidget(named("btnStart", "", ":/res/start"));
    row->addWidget(named("btnStop", "", ":/res/stop"));
    row->addWidget(card("frameTime", ":/res/time", labelled("lblTotalElapsedTime", "0:42")));
    row->addWidget(card("frameHR", ":/res/heart", labelled("lblHR", "72")));
    layout->addWidget(bottom);
    return column;
}

} // namespace

std::unique_ptr<QWidget> makeViewsPage()
{
    auto page = std::make_unique<QMainWindow>();
    page->menuBar()->addMenu(QStringLiteral("&Study"));
    page->statusBar()->showMessage(QStringLiteral("Ready"));
    page->addToolBar(QStringLiteral("Tools"))->addAction(QIcon(QStringLiteral(":/res/print")), QString());
    auto* central = new QWidget;
    auto* grid = new QGridLayout(central);
    auto* splitter = new QSplitter;
    splitter->addWidget(categories());
    splitter->addWidget(checkList());
    grid->addWidget(splitter, 0, 0);
    grid->addWidget(tree(), 0, 1);
    grid->addWidget(table(), 0, 2);
    grid->addWidget(group(), 1, 0);
    grid->addWidget(tabs(), 1, 1);
    grid->addWidget(new QCalendarWidget, 1, 2);
    grid->addWidget(scrollBar(Qt::Horizontal), 2, 0);
    grid->addWidget(buttonBox(), 2, 1, 1, 2);
    grid->addWidget(scrollBar(Qt::Vertical), 0, 3, 2, 1);
    page->setCentralWidget(central);
    return page;
}

std::unique_ptr<QWidget> makeNamedPage()
{
    auto page = std::make_unique<QMainWindow>();
    auto* central = new QWidget;
    auto* layout = new QHBoxLayout(central);
    layout->addWidget(launcherColumn());
    layout->addWidget(monitorColumn(), 1);
    page->setCentralWidget(central);
    return page;
}
