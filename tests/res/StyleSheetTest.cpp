#include "gallery/StylePopups.h"
#include "gallery/StyleStates.h"
#include "gallery/StyleViews.h"
#include "res/DarkPalette.h"
#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QIcon>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPixmap>
#include <QPushButton>
#include <QScrollBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QtTest>

namespace {

QStringList messages;

/// What the offscreen platform cannot do says nothing about a sheet.
void keepMessage(QtMsgType, const QMessageLogContext&, const QString& text)
{
    if (!text.startsWith(QLatin1String("This plugin does not support")))
        messages.append(text);
}

QString sheet(const QString& scheme)
{
    QFile file(QStringLiteral(":/styles/%1.css").arg(scheme));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QImage picture(QWidget& widget)
{
    return widget.grab().toImage();
}

bool hasColour(const QImage& image, const QColor& colour)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) == colour)
                return true;
        }
    }
    return false;
}

/// Lightness of the darkest and of the brightest pixel.
std::pair<int, int> range(const QImage& image)
{
    std::pair<int, int> found{255, 0};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const int lightness = image.pixelColor(x, y).lightness();
            found = {std::min(found.first, lightness), std::max(found.second, lightness)};
        }
    }
    return found;
}

/// Shows the widget in a dialog of its own, the way it stands in a window.
template <typename TWidget> std::unique_ptr<QDialog> shown(TWidget* widget)
{
    auto dialog = std::make_unique<QDialog>();
    (new QVBoxLayout(dialog.get()))->addWidget(widget);
    dialog->show();
    QApplication::processEvents();
    return dialog;
}

const QString errorStyle = QStringLiteral("background-color: lightyellow");

} // namespace

class StyleSheetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void sheetsAreCompleteAndParsed_data();
    void sheetsAreCompleteAndParsed();
    void everyPictureOfASheetExists_data();
    void everyPictureOfASheetExists();
    void paletteHasTheColoursOfTheSheet();
    void textsAreInLiberationSans();
    void fieldInErrorIsReadableAndRecovers_data();
    void fieldInErrorIsReadableAndRecovers();
    void comboInErrorIsReadable();
    void hintIsDimmerThanWhatIsTyped();
    void longTextOfAButtonIsNotCut();
    void focusIsSeen_data();
    void focusIsSeen();
    void buttonUnderTheMouseIsSeen();
    void switchedButtonIsSeen();
    void disabledIconIsDimmed();
    void buttonsAndRowsAreHighEnoughForAFinger();
    void rowsInAMainWindowHaveTheHeightOfTheSheet();
    void scrollBarIsDark();
    void nothingIsRedOnTheViews();
};

void StyleSheetTest::initTestCase()
{
    initResources();
    QApplication::setStyle(new DarkStyle);
}

void StyleSheetTest::init()
{
    qApp->setStyleSheet(sheet(QStringLiteral("dark")));
}

void StyleSheetTest::sheetsAreCompleteAndParsed_data()
{
    QTest::addColumn<QString>("scheme");
    for (const char* scheme : {"dark", "dark-vet", "light"})
        QTest::newRow(scheme) << QString::fromLatin1(scheme);
}

void StyleSheetTest::sheetsAreCompleteAndParsed()
{
    QFETCH(QString, scheme);
    const QString text = sheet(scheme);
    QVERIFY(text.size() > 1000);
    QVERIFY2(!text.contains(QLatin1Char('@')), "a colour is not filled in");
    QCOMPARE(text.count(QLatin1Char('{')), text.count(QLatin1Char('}')));

    messages.clear();
    const QtMessageHandler before = qInstallMessageHandler(keepMessage);
    qApp->setStyleSheet(text);
    std::vector<std::unique_ptr<QWidget>> pages;
    pages.push_back(makeStatesPage());
    pages.push_back(makeViewsPage());
    pages.push_back(makeNamedPage());
    for (TStylePopup& popup : makePopups())
        pages.push_back(std::move(popup.widget));
    for (const auto& page : pages) {
        page->show();
        QApplication::processEvents();
        page->grab();
    }
    qInstallMessageHandler(before);
    QCOMPARE(messages, QStringList());
}

void StyleSheetTest::everyPictureOfASheetExists_data()
{
    sheetsAreCompleteAndParsed_data();
}

void StyleSheetTest::everyPictureOfASheetExists()
{
    QFETCH(QString, scheme);
    static const QRegularExpression url(QStringLiteral("url\\(([^)]*)\\)"));
    auto found = url.globalMatch(sheet(scheme));
    QVERIFY(found.hasNext());
    while (found.hasNext()) {
        const QString path = found.next().captured(1);
        QVERIFY2(path.startsWith(QStringLiteral(":/styles/%1/").arg(scheme)), qPrintable(path));
        QVERIFY2(!QIcon(path).pixmap(16, 16).isNull(), qPrintable(path));
    }
}

void StyleSheetTest::paletteHasTheColoursOfTheSheet()
{
    QDialog dialog;
    dialog.show();
    QApplication::processEvents();
    QCOMPARE(picture(dialog).pixelColor(4, 4), darkPalette().color(QPalette::Window));
    QCOMPARE(QApplication::palette().color(QPalette::Window), darkPalette().color(QPalette::Window));
    QLabel label;
    label.ensurePolished();
    QCOMPARE(label.palette().color(QPalette::WindowText), darkPalette().color(QPalette::WindowText));
}

void StyleSheetTest::textsAreInLiberationSans()
{
    auto* label = new QLabel(QStringLiteral("Patient"));
    const auto dialog = shown(label);
    QCOMPARE(QFontInfo(label->font()).family(), QStringLiteral("Liberation Sans"));
    QCOMPARE(label->font().pixelSize(), 14);
}

void StyleSheetTest::fieldInErrorIsReadableAndRecovers_data()
{
    QTest::addColumn<bool>("styledBeforeShown");
    QTest::newRow("in error when shown") << true;
    QTest::newRow("in error later") << false;
}

void StyleSheetTest::fieldInErrorIsReadableAndRecovers()
{
    QFETCH(bool, styledBeforeShown);
    auto* field = new QLineEdit(QStringLiteral("MMMM"));
    if (styledBeforeShown)
        field->setStyleSheet(errorStyle);
    const auto dialog = shown(field);
    field->clearFocus();
    field->setStyleSheet(errorStyle);
    QApplication::processEvents();
    const QImage bad = picture(*field);
    QVERIFY(hasColour(bad, QColor(QStringLiteral("lightyellow"))));
    QVERIFY(field->palette().color(QPalette::Text).lightness() < 60);

    field->setStyleSheet({});
    QApplication::processEvents();
    QVERIFY(!hasColour(picture(*field), QColor(QStringLiteral("lightyellow"))));
    QCOMPARE(field->palette().color(QPalette::Text), darkPalette().color(QPalette::Text));
}

void StyleSheetTest::comboInErrorIsReadable()
{
    auto* combo = new QComboBox;
    combo->addItems({QStringLiteral("Male"), QStringLiteral("Female")});
    const auto dialog = shown(combo);
    combo->setStyleSheet(errorStyle);
    combo->clearFocus();
    QApplication::processEvents();
    const QImage bad = picture(*combo);
    QVERIFY(hasColour(bad, QColor(QStringLiteral("lightyellow"))));
    QVERIFY(range(bad).first < 60);
    combo->showPopup();
    const auto [darkest, brightest] = range(picture(*combo->view()));
    QVERIFY(brightest - darkest > 120);
    combo->hidePopup();
    combo->setStyleSheet({});
    QApplication::processEvents();
    QVERIFY(!hasColour(picture(*combo), QColor(QStringLiteral("lightyellow"))));
}

void StyleSheetTest::hintIsDimmerThanWhatIsTyped()
{
    auto* field = new QLineEdit;
    field->setPlaceholderText(QStringLiteral("Comments..."));
    const auto dialog = shown(field);
    const QColor hint = darkPalette().color(QPalette::PlaceholderText);
    QTRY_COMPARE(field->palette().color(QPalette::PlaceholderText), hint);
    QVERIFY(hint.lightness() < darkPalette().color(QPalette::Text).lightness() - 40);
    field->setStyleSheet(errorStyle);
    field->setStyleSheet({});
    QTRY_COMPARE(field->palette().color(QPalette::PlaceholderText), hint);
    QCOMPARE(field->palette().color(QPalette::Text), darkPalette().color(QPalette::Text));
}

void StyleSheetTest::longTextOfAButtonIsNotCut()
{
    QPushButton button(QIcon(QStringLiteral(":/res/female")), QStringLiteral("A rather long text"));
    button.ensurePolished();
    QVERIFY(button.minimumSizeHint().width() > button.fontMetrics().horizontalAdvance(button.text()) + 40);
    QCOMPARE(button.minimumWidth(), 0);
}

void StyleSheetTest::focusIsSeen_data()
{
    QTest::addColumn<QWidget*>("control");
    QTest::newRow("push button") << static_cast<QWidget*>(new QPushButton(QStringLiteral("Save")));
    QTest::newRow("tool button") << static_cast<QWidget*>(new QToolButton);
    QTest::newRow("check box") << static_cast<QWidget*>(new QCheckBox(QStringLiteral("Print")));
    QTest::newRow("field") << static_cast<QWidget*>(new QLineEdit);
    QTest::newRow("combo box") << static_cast<QWidget*>(new QComboBox);
    QTest::newRow("list") << static_cast<QWidget*>(new QListWidget);
}

void StyleSheetTest::focusIsSeen()
{
    QFETCH(QWidget*, control);
    const QColor ring = darkPalette().color(QPalette::Link);
    const auto dialog = shown(control);
    control->setFocusPolicy(Qt::StrongFocus);
    QVERIFY(QTest::qWaitForWindowActive(dialog.get()));
    control->clearFocus();
    QApplication::processEvents();
    const QSize sizeBefore = control->size();
    QVERIFY(!hasColour(picture(*control), ring));
    control->setFocus(Qt::TabFocusReason);
    QApplication::processEvents();
    QVERIFY(hasColour(picture(*control), ring));
    QCOMPARE(control->size(), sizeBefore);
}

void StyleSheetTest::buttonUnderTheMouseIsSeen()
{
    auto* button = new QPushButton(QStringLiteral("Save"));
    button->setAutoDefault(false);
    const auto dialog = shown(button);
    QTest::mouseMove(dialog.get(), QPoint(1, 1));
    const QImage away = picture(*button);
    QTest::mouseMove(button);
    QTRY_VERIFY(button->underMouse());
    QVERIFY(picture(*button) != away);
}

void StyleSheetTest::switchedButtonIsSeen()
{
    auto* button = new QPushButton(QStringLiteral("25"));
    button->setCheckable(true);
    button->setAutoDefault(false);
    const auto dialog = shown(button);
    const QImage off = picture(*button);
    button->setChecked(true);
    QVERIFY(picture(*button) != off);
}

void StyleSheetTest::disabledIconIsDimmed()
{
    const QIcon icon(QStringLiteral(":/res/stop"));
    const QImage normal = icon.pixmap(QSize(24, 24), QIcon::Normal).toImage();
    const QImage disabled = icon.pixmap(QSize(24, 24), QIcon::Disabled).toImage();
    QCOMPARE(disabled.size(), normal.size());
    const QPoint middle = normal.rect().center();
    QVERIFY(normal.pixelColor(middle).alpha() > 250);
    QVERIFY(disabled.pixelColor(middle).alpha() > 50);
    QVERIFY(disabled.pixelColor(middle).alpha() < 130);
}

void StyleSheetTest::buttonsAndRowsAreHighEnoughForAFinger()
{
    auto* button = new QPushButton(QStringLiteral("OK"));
    auto* tool = new QToolButton;
    auto* field = new QLineEdit;
    auto* combo = new QComboBox;
    combo->addItem(QStringLiteral("Bruce"));
    QDialog dialog;
    auto* layout = new QVBoxLayout(&dialog);
    for (QWidget* each : std::initializer_list<QWidget*>{button, tool, field, combo})
        layout->addWidget(each);
    dialog.show();
    for (QWidget* each : std::initializer_list<QWidget*>{button, tool, field, combo})
        QVERIFY2(each->height() >= 36, each->metaObject()->className());
    combo->showPopup();
    QVERIFY(combo->view()->sizeHintForRow(0) >= 32);
    combo->hidePopup();
}

void StyleSheetTest::rowsInAMainWindowHaveTheHeightOfTheSheet()
{
    QMainWindow window;
    auto* list = new QListWidget;
    list->addItems({QStringLiteral("1"), QStringLiteral("2")});
    window.setCentralWidget(list);
    window.show();
    QTRY_COMPARE(list->visualItemRect(list->item(1)).top(), list->sizeHintForRow(0));
    QVERIFY(list->sizeHintForRow(0) >= 32);
}

void StyleSheetTest::scrollBarIsDark()
{
    auto* bar = new QScrollBar(Qt::Horizontal);
    bar->setRange(0, 100);
    bar->setPageStep(20);
    const auto dialog = shown(bar);
    const QImage image = picture(*bar);
    QVERIFY(range(image).second < 140);
    QVERIFY2(range(image).second - range(image).first > 30, "the handle is not seen");
}

void StyleSheetTest::nothingIsRedOnTheViews()
{
    const auto page = makeViewsPage();
    page->resize(1280, 800);
    page->show();
    QApplication::processEvents();
    const QImage image = picture(*page);
    int red = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour = image.pixelColor(x, y);
            red += colour.red() > colour.green() + 60 && colour.red() > colour.blue() + 60 ? 1 : 0;
        }
    }
    QCOMPARE(red, 0);
}

QTEST_MAIN(StyleSheetTest)
#include "StyleSheetTest.moc"
