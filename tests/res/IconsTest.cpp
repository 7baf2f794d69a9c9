#include "res/Resources.h"

#include <QDir>
#include <QIcon>
#include <QImage>
#include <QPixmap>
#include <QtTest>

namespace {

constexpr int sizes[]{16, 24, 50, 100};

QImage painted(const QIcon& icon, int size, QIcon::Mode mode = QIcon::Normal)
{
    return icon.pixmap(QSize(size, size), mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

int share(const QImage& image, bool (*counts)(QRgb))
{
    int found = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            found += counts(image.pixel(x, y)) ? 1 : 0;
    }
    return 100 * found / (image.width() * image.height());
}

bool isClear(QRgb pixel)
{
    return qAlpha(pixel) < 16;
}

bool isFull(QRgb pixel)
{
    return qAlpha(pixel) > 239;
}

bool isBlurred(QRgb pixel)
{
    return !isClear(pixel) && !isFull(pixel);
}

/// The mean colour of what is painted in full.
QColor meanColour(const QImage& image)
{
    qint64 red = 0, green = 0, blue = 0, count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            if (!isFull(pixel))
                continue;
            red += qRed(pixel), green += qGreen(pixel), blue += qBlue(pixel), ++count;
        }
    }
    return count ? QColor(int(red / count), int(green / count), int(blue / count)) : QColor();
}

double luminance(const QColor& colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

/// 1 for equal colours, 21 for black on white.
double contrast(const QColor& one, const QColor& other)
{
    const auto [low, high] = std::minmax({luminance(one), luminance(other)});
    return (high + 0.05) / (low + 0.05);
}

} // namespace

class IconsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyIconOfTheWindowsIsThere_data();
    void everyIconOfTheWindowsIsThere();
    void everyIconIsPaintedInEverySize_data();
    void everyIconIsPaintedInEverySize();
    void largeIconsAreDrawnNotStretched();
    void onlyAnAlarmIsRed();
    void iconsOverTheEcgAreSeenOnDarkAndOnLightPaper();
    void anIconWithoutResourceIsEmpty();
};

void IconsTest::initTestCase()
{
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    initResources();
    initResources();
}

void IconsTest::everyIconOfTheWindowsIsThere_data()
{
    QTest::addColumn<QString>("alias");
    for (const char* alias :
         {"start",        "stop",    "repeat",      "save",       "filter-baseline", "filter-muscle",
          "filter-notch", "patient", "time",        "heart",      "low-battery",     "connecting",
          "logo",         "ecg",     "stress-test", "open-study", "config",          "close",
          "more",         "male",    "female",      "protocols",  "electrodes"})
        QTest::newRow(alias) << QString::fromLatin1(alias);
}

void IconsTest::everyIconOfTheWindowsIsThere()
{
    QFETCH(QString, alias);
    QVERIFY(QFile::exists(QStringLiteral(":/res/") + alias));
}

void IconsTest::everyIconIsPaintedInEverySize_data()
{
    QTest::addColumn<QString>("alias");
    const QStringList aliases = QDir(QStringLiteral(":/res")).entryList(QDir::Files);
    QVERIFY(!aliases.isEmpty());
    for (const QString& alias : aliases)
        QTest::newRow(qPrintable(alias)) << alias;
}

void IconsTest::everyIconIsPaintedInEverySize()
{
    QFETCH(QString, alias);
    const QIcon icon(QStringLiteral(":/res/") + alias);
    QVERIFY(!icon.isNull());
    for (const int size : sizes) {
        const QImage image = painted(icon, size);
        QCOMPARE(image.size(), QSize(size, size) * qApp->devicePixelRatio());
        QVERIFY2(share(image, isClear) >= 2, qPrintable(QString::number(size)));
        QVERIFY2(share(image, isFull) + share(image, isBlurred) >= 2, qPrintable(QString::number(size)));
    }
}

void IconsTest::largeIconsAreDrawnNotStretched()
{
    const QStringList aliases = QDir(QStringLiteral(":/res")).entryList(QDir::Files);
    for (const QString& alias : aliases) {
        const QIcon icon(QStringLiteral(":/res/") + alias);
        const int drawn = share(painted(icon, 400), isBlurred);
        QVERIFY2(drawn <= 3, qPrintable(QStringLiteral("%1: %2 % of blurred edges").arg(alias).arg(drawn)));
    }
}

void IconsTest::onlyAnAlarmIsRed()
{
    const QStringList aliases = QDir(QStringLiteral(":/res")).entryList(QDir::Files);
    for (const QString& alias : aliases) {
        const QColor colour = meanColour(painted(QIcon(QStringLiteral(":/res/") + alias), 100));
        QVERIFY2(colour.isValid(), qPrintable(alias));
        const bool red = colour.red() > colour.green() + 60 && colour.red() > colour.blue() + 60;
        QVERIFY2(red == (alias == QLatin1String("low-battery")), qPrintable(alias));
        QVERIFY2(red || colour.lightness() > 100, qPrintable(alias));
    }
}

void IconsTest::iconsOverTheEcgAreSeenOnDarkAndOnLightPaper()
{
    for (const char* alias : {":/res/low-battery", ":/res/connecting"}) {
        const QColor colour = meanColour(painted(QIcon(QLatin1String(alias)), 100));
        QVERIFY2(contrast(colour, Qt::white) > 2.8, alias);
        QVERIFY2(contrast(colour, Qt::black) > 4.5, alias);
    }
}

void IconsTest::anIconWithoutResourceIsEmpty()
{
    QVERIFY(QIcon(QStringLiteral(":/res/no-such-icon")).pixmap(24, 24).isNull());
}

QTEST_MAIN(IconsTest)
#include "IconsTest.moc"
