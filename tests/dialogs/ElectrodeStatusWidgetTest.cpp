#include "dialogs/ElectrodeStatusWidget.h"

#include <QLabel>
#include <QPushButton>
#include <QtTest>

namespace {

const QStringList electrodes = QStringLiteral("LL LA RA V1 V2 V3 V4 V5 V6").split(QLatin1Char(' '));

QLabel* labelOf(const QWidget& panel, const QString& electrode)
{
    for (QLabel* label : panel.findChildren<QLabel*>()) {
        if (label->text() == electrode)
            return label;
    }
    return nullptr;
}

/// Names of the electrodes with their style, in the fixed order.
QStringList stylesOf(const QWidget& panel)
{
    QStringList styles;
    for (const QString& electrode : electrodes)
        styles << labelOf(panel, electrode)->styleSheet();
    return styles;
}

QPushButton* hideButtonOf(const QWidget& panel)
{
    return panel.findChild<QPushButton*>(QStringLiteral("btnHide"));
}

} // namespace

class ElectrodeStatusWidgetTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void allNineElectrodesBeginGreen()
    {
        const ElectrodeStatusWidget panel;
        QCOMPARE(stylesOf(panel), QStringList(QVector<QString>(9, QStringLiteral("color: green")).toList()));
        QVERIFY(panel.mayShow());
    }

    void itIsHeadedByItsTitle()
    {
        const ElectrodeStatusWidget panel;
        QCOMPARE(panel.windowTitle(), QStringLiteral("Electrode status"));
        QVERIFY(labelOf(panel, QStringLiteral("Electrode status")));
    }

    void anElectrodeThatIsOffIsRedUntilItIsBack()
    {
        ElectrodeStatusWidget panel;
        for (const QString& electrode : electrodes) {
            panel.setElectrodeState(electrode, true);
            QCOMPARE(labelOf(panel, electrode)->styleSheet(), QStringLiteral("color: red"));
            QCOMPARE(stylesOf(panel).count(QStringLiteral("color: red")), 1);
            panel.setElectrodeState(electrode, false);
            QCOMPARE(labelOf(panel, electrode)->styleSheet(), QStringLiteral("color: green"));
        }
    }

    void anUnknownElectrodeHasNoEffect()
    {
        ElectrodeStatusWidget panel;
        const QStringList before = stylesOf(panel);
        for (const char* name : {"RL", "V7", "", "ll", "Electrode status"})
            panel.setElectrodeState(QLatin1String(name), true);
        QCOMPARE(stylesOf(panel), before);
    }

    void theStateIsToldWithoutColorsToo()
    {
        ElectrodeStatusWidget panel;
        panel.setElectrodeState(QStringLiteral("V3"), true);
        QCOMPARE(labelOf(panel, QStringLiteral("V3"))->accessibleName(), QStringLiteral("V3 is off"));
        QCOMPARE(labelOf(panel, QStringLiteral("V2"))->accessibleName(), QStringLiteral("V2 is connected"));
    }

    void sentAwayItStaysAway()
    {
        ElectrodeStatusWidget panel;
        panel.show();
        hideButtonOf(panel)->click();
        QVERIFY(!panel.isVisible());
        QVERIFY(!panel.mayShow());
        panel.setElectrodeState(QStringLiteral("LA"), true);
        QVERIFY(!panel.isVisible());
        QVERIFY(!panel.mayShow());
    }

    void theButtonIsFlatAndInItsStyle()
    {
        const ElectrodeStatusWidget panel;
        const QPushButton* button = hideButtonOf(panel);
        QCOMPARE(button->text(), QStringLiteral("Do not show again"));
        QVERIFY(button->isFlat());
        QCOMPARE(button->styleSheet(),
                 QStringLiteral("QPushButton {\nborder: none;\n}\nQPushButton:hover {\nbackground-color: "
                                "lightgray;\n}\nQPushButton:pressed {\nbackground-color: gray;\n}\n"));
    }

    void theTraceDoesNotShowThrough()
    {
        QWidget window;
        window.resize(400, 400);
        window.setStyleSheet(QStringLiteral("QWidget { background: yellow } #ElectrodeStatusWidget { "
                                            "background: #102030 }"));
        ElectrodeStatusWidget panel(&window);
        panel.adjustSize();
        const QImage picture = panel.grab().toImage();
        QCOMPARE(picture.pixelColor(2, 2), QColor(0x10, 0x20, 0x30));
    }
};

QTEST_MAIN(ElectrodeStatusWidgetTest)
#include "ElectrodeStatusWidgetTest.moc"
