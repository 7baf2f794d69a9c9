#include "app/DesktopRun.h"

#include <QDialogButtonBox>
#include <QPushButton>

/// The whole program beside its catalogues, where this test is built: it installs them itself.
class SpanishTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_home.prepare(); }
    void cleanup() { TestHome::closeStore(); }

    void theProgramAndQtSpeakSpanish()
    {
        QString close;
        QString cancel;
        const DesktopRun run([&](MainWindow& window) {
            close = window.findChild<QAbstractButton*>(QStringLiteral("btnClose"))->text();
            cancel = QDialogButtonBox(QDialogButtonBox::Cancel).button(QDialogButtonBox::Cancel)->text();
            window.close();
        });
        QCOMPARE(close.remove(QLatin1Char('&')), QStringLiteral("Cerrar"));
        QCOMPARE(cancel.remove(QLatin1Char('&')), QStringLiteral("Cancelar"));
        QCOMPARE(run.boxes, QStringList());
    }

    void whatEndsTheProgramIsToldInSpanish()
    {
        const DesktopRun run(
            [](MainWindow& window) { throwLater(window, std::runtime_error("Device not found")); });
        QCOMPARE(run.boxes, QStringList(QStringLiteral("critical, Error: No se encontr\u00f3 el equipo")));
    }

    void aStartThatFailsIsToldInSpanish()
    {
        // The recording of the demonstration is not there.
        settings::acqMode.setValue(QStringLiteral("demo"));
        QVERIFY(QDir::setCurrent(m_home.path("data")));
        const DesktopRun run([](MainWindow& window) {
            auto* section = window.findChild<QWidget*>(QStringLiteral("frameEcg"));
            section->findChild<QLineEdit*>(QStringLiteral("txtLastName"))->setText(QStringLiteral("Diaz"));
            section->findChild<QLineEdit*>(QStringLiteral("txtFirstName"))->setText(QStringLiteral("Ana"));
            window.findChild<QAbstractButton*>(QStringLiteral("btnStartEcg"))->click();
            window.close();
        });
        QCOMPARE(run.boxes, QStringList(QStringLiteral("critical, Error: No se puede abrir el archivo")));
    }

private:
    DesktopHome m_home;
};

QTEST_APPLESS_MAIN(SpanishTest)
#include "SpanishTest.moc"
