#include "display/ColorSchemes.h"
#include "display/QSignalBrowseDisplay.h"
#include "display/QSignalMonitorDisplay.h"

#include <QtTest>

namespace {

/// Logs what a scheme does to a display.
struct TDisplayLog
{
    void setColor(int tag, const QColor& color)
    {
        colors[tag] = color;
        refreshedLast = false;
    }
    void refresh()
    {
        ++refreshes;
        refreshedLast = true;
    }

    QMap<int, QColor> colors;
    int refreshes = 0;
    bool refreshedLast = false;
};

} // namespace

class ColorSchemesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theNamesComeInAlphabeticalOrder();
    void everySchemeHasItsColors_data();
    void everySchemeHasItsColors();
    void everySchemeColorsTheTagsZeroToNine();
    void aSchemeIsSetTagByTagAndThenRefreshed();
    void anUnknownNameSetsNoColor_data();
    void anUnknownNameSetsNoColor();
    void noDisplayIsPassedOver();
    void theDisplaysTakeAScheme();
    void aSchemeChangesPaperAndGrid();
    void saturationIsHalfTransparentWhateverIsSet();
    void anUnknownNameLeavesADisplayItsDefaults_data();
    void anUnknownNameLeavesADisplayItsDefaults();
};

void ColorSchemesTest::theNamesComeInAlphabeticalOrder()
{
    QCOMPARE(schemeNames(),
             QStringList({QStringLiteral("Black"), QStringLiteral("Blue"), QStringLiteral("Light")}));
}

void ColorSchemesTest::everySchemeHasItsColors_data()
{
    QTest::addColumn<int>("tag");
    QTest::addColumn<QColor>("light");
    QTest::addColumn<QColor>("blue");
    QTest::addColumn<QColor>("black");

    const QColor orange(255, 128, 0, 128);
    QTest::newRow("trace") << 0 << QColor(0, 0, 0) << QColor(255, 255, 255) << QColor(0, 255, 0);
    QTest::newRow("background") << 1 << QColor(255, 255, 255) << QColor(0, 0, 64) << QColor(0, 0, 0);
    QTest::newRow("grid") << 2 << QColor(220, 200, 180) << QColor(96, 96, 128) << QColor(96, 96, 96);
    QTest::newRow("labels") << 3 << QColor(192, 192, 192) << QColor(160, 160, 164) << QColor(160, 160, 164);
    QTest::newRow("average beat") << 4 << QColor(0, 0, 128) << QColor(0, 255, 255) << QColor(255, 255, 0);
    QTest::newRow("reference beat") << 5 << QColor(0, 128, 0) << QColor(0, 255, 0) << QColor(255, 255, 255);
    QTest::newRow("saturated trace") << 6 << orange << orange << orange;
    QTest::newRow("beat ticks") << 7 << QColor(0, 0, 255) << QColor(255, 255, 0) << QColor(0, 255, 255);
    QTest::newRow("sweep cursor") << 8 << QColor(160, 160, 164) << QColor(128, 128, 128)
                                  << QColor(128, 128, 128);
    QTest::newRow("fiducial marks") << 9 << QColor(128, 0, 0) << QColor(255, 0, 0) << QColor(255, 0, 0);
}

void ColorSchemesTest::everySchemeHasItsColors()
{
    QFETCH(int, tag);
    QFETCH(QColor, light);
    QFETCH(QColor, blue);
    QFETCH(QColor, black);
    // Darkening leaves a colour in another of its forms; what is drawn is the same.
    QCOMPARE(schemeColors(QStringLiteral("Light")).value(tag).rgba(), light.rgba());
    QCOMPARE(schemeColors(QStringLiteral("Blue")).value(tag).rgba(), blue.rgba());
    QCOMPARE(schemeColors(QStringLiteral("Black")).value(tag).rgba(), black.rgba());
}

void ColorSchemesTest::everySchemeColorsTheTagsZeroToNine()
{
    const QList<int> tags{0, 1, 2, 3, 4, 5, 6, 7, 8, 9};
    for (const QString& name : schemeNames())
        QCOMPARE(schemeColors(name).keys(), tags);
}

void ColorSchemesTest::aSchemeIsSetTagByTagAndThenRefreshed()
{
    for (const QString& name : schemeNames()) {
        TDisplayLog display;
        applyScheme(name, &display);
        QCOMPARE(display.colors, schemeColors(name));
        QCOMPARE(display.refreshes, 1);
        QVERIFY(display.refreshedLast);
    }
}

void ColorSchemesTest::anUnknownNameSetsNoColor_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("none, as after the installation") << QString();
    QTest::newRow("of another version") << QStringLiteral("Sepia");
    QTest::newRow("in other letters") << QStringLiteral("black");
}

void ColorSchemesTest::anUnknownNameSetsNoColor()
{
    QFETCH(QString, name);
    TDisplayLog display;
    applyScheme(name, &display);
    QVERIFY(display.colors.isEmpty());
    QCOMPARE(display.refreshes, 1);
}

void ColorSchemesTest::noDisplayIsPassedOver()
{
    TDisplayLog* none = nullptr;
    applyScheme(QStringLiteral("Black"), none);
    QVERIFY(!none);
}

void ColorSchemesTest::theDisplaysTakeAScheme()
{
    QSignalMonitorDisplay monitor;
    QSignalBrowseDisplay browser;
    for (const QString& name : schemeNames()) {
        applyScheme(name, &monitor);
        applyScheme(name, &browser);
        const QMap<int, QColor> colors = schemeColors(name);
        for (int tag = 0; tag < 10; ++tag) {
            QCOMPARE(monitor.color(tag).rgba(), colors[tag].rgba());
            QCOMPARE(browser.color(tag).rgba(), colors[tag].rgba());
        }
    }
    QCOMPARE(browser.color(10).rgba(), QColor(128, 128, 128, 128).rgba());
}

void ColorSchemesTest::aSchemeChangesPaperAndGrid()
{
    QSignalMonitorDisplay monitor;
    QSignalBrowseDisplay browser;
    const auto count = [](QWidget& display, const QColor& color) {
        const QImage image = display.grab().toImage().convertToFormat(QImage::Format_RGB32);
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                found += image.pixel(x, y) == color.rgb() ? 1 : 0;
        }
        return found;
    };
    const auto check = [&](QWidget& display) {
        QVERIFY(count(display, Qt::black) > 20000);
        QVERIFY(count(display, QColor(96, 96, 96)) > 2000);
        QCOMPARE(count(display, QColor(220, 200, 180)), 0);
    };
    for (QWidget* display : {static_cast<QWidget*>(&monitor), static_cast<QWidget*>(&browser)}) {
        display->resize(400, 200);
        QVERIFY(count(*display, QColor(220, 200, 180)) > 2000);
    }
    applyScheme(QStringLiteral("Black"), &monitor);
    check(monitor);
    applyScheme(QStringLiteral("Black"), &browser);
    check(browser);
}

void ColorSchemesTest::saturationIsHalfTransparentWhateverIsSet()
{
    QSignalMonitorDisplay monitor;
    QSignalBrowseDisplay browser;
    monitor.setColor(6, QColor(1, 2, 3));
    browser.setColor(6, QColor(1, 2, 3));
    QCOMPARE(monitor.color(6).rgba(), QColor(1, 2, 3, 128).rgba());
    QCOMPARE(browser.color(6).rgba(), QColor(1, 2, 3, 128).rgba());
}

void ColorSchemesTest::anUnknownNameLeavesADisplayItsDefaults_data()
{
    anUnknownNameSetsNoColor_data();
}

void ColorSchemesTest::anUnknownNameLeavesADisplayItsDefaults()
{
    QFETCH(QString, name);
    QSignalMonitorDisplay monitor;
    QSignalBrowseDisplay browser;
    const QSignalMonitorDisplay untouchedMonitor;
    const QSignalBrowseDisplay untouchedBrowser;
    applyScheme(name, &monitor);
    applyScheme(name, &browser);
    for (int tag = 0; tag < 11; ++tag) {
        QCOMPARE(monitor.color(tag), untouchedMonitor.color(tag));
        QCOMPARE(browser.color(tag), untouchedBrowser.color(tag));
    }
}

QTEST_MAIN(ColorSchemesTest)
#include "ColorSchemesTest.moc"
