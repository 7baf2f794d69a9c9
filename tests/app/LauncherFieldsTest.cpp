#include "acq/DeviceDiscovery.h"
#include "app/BoxReader.h"
#include "app/LauncherUser.h"
#include "app/RecentStudies.h"

#include <QComboBox>

namespace {

QStringList itemsOf(const QComboBox* combo)
{
    QStringList items;
    for (int i = 0; i < combo->count(); ++i)
        items << combo->itemText(i);
    return items;
}

} // namespace

/// The fields of the launcher, and what starts with them where there is no device.
class LauncherFieldsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        acq::setPortLister([] { return std::vector<TPortDescription>(); });
        wearTheStyle();
    }

    void init()
    {
        QSettings().clear();
        TestHome::closeStore();
        QDir(m_home.dataFolder()).removeRecursively();
    }

    void aStartNeedsItsFields()
    {
        LauncherUser user;
        user.openEcg();
        auto* start = user.find("btnStartEcg");
        QVERIFY(!start->isEnabled());
        user.type("txtLastName", "Diaz");
        QVERIFY(!start->isEnabled());
        user.type("txtFirstName", "  ");
        QVERIFY(!start->isEnabled());
        user.type("txtFirstName", "Ana");
        QVERIFY(start->isEnabled());
        user.type("txtLastName", "");
        QVERIFY(!start->isEnabled());
    }

    void maleAndFemaleExcludeEachOther()
    {
        LauncherUser user;
        user.openEcg();
        user.click("btnMale", "frameEcg");
        user.click("btnFemale", "frameEcg");
        QVERIFY(!user.find<QAbstractButton>("btnMale", "frameEcg")->isChecked());
        QVERIFY(user.find<QAbstractButton>("btnFemale", "frameEcg")->isChecked());
        QVERIFY(!user.find<QAbstractButton>("btnFemale", "frameStress")->isChecked());
    }

    void aBirthDateOfThePatientGoesWithTheAgeThatIsTyped()
    {
        QuickFields fields;
        auto* age = fields.findChild<QLineEdit*>(QStringLiteral("txtAge"));
        age->setText(QStringLiteral("50"));
        age->setProperty("birthDate", QStringLiteral("19740102"));
        QCOMPARE(fields.patient().birthDate, QByteArray("19740102"));
        QTest::keyClicks(age, QStringLiteral("1"));
        QCOMPARE(fields.patient().birthDate, QByteArray());
        age->setProperty("birthDate", QStringLiteral("19740102"));
        fields.clear();
        QCOMPARE(fields.patient().birthDate, QByteArray());
    }

    void theProtocolsEndWithTheTiltTest()
    {
        LauncherUser user;
        QStringList expected;
        for (const QByteArray& name : studyDatabase()->protocolNames())
            expected << QString::fromUtf8(name);
        QVERIFY(expected.size() > 1);
        expected << QStringLiteral("Tilt test");
        QCOMPARE(itemsOf(user.find<QComboBox>("cboProtocol")), expected);
        QCOMPARE(user.find<QComboBox>("cboProtocol")->currentIndex(), 0);
    }

    void theLastProtocolIsChosen_data()
    {
        QTest::addColumn<QString>("last");
        QTest::addColumn<QString>("chosen");
        QTest::newRow("of the table") << QStringLiteral("Bruce") << QStringLiteral("Bruce");
        QTest::newRow("tilt test") << QStringLiteral("Tilt test") << QStringLiteral("Tilt test");
        QTest::newRow("gone") << QStringLiteral("No such") << QString();
        QTest::newRow("none") << QString() << QString();
    }

    void theLastProtocolIsChosen()
    {
        QFETCH(QString, last);
        QFETCH(QString, chosen);
        settings::lastProtocol.setValue(last);
        LauncherUser user;
        auto* combo = user.find<QComboBox>("cboProtocol");
        QCOMPARE(combo->currentText(), chosen.isEmpty() ? combo->itemText(0) : chosen);
    }

    void withoutADeviceTheLauncherStaysUsable_data()
    {
        QTest::addColumn<int>("way");
        QTest::newRow("start") << 0;
        QTest::newRow("section's button once more") << 1;
        QTest::newRow("Enter") << 2;
    }

    void withoutADeviceTheLauncherStaysUsable()
    {
        QFETCH(int, way);
        BoxReader reader;
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Diaz");
        user.type("txtFirstName", "Ana");
        if (way == 0)
            user.click("btnStartEcg");
        else if (way == 1)
            user.click("btnNewStudyEcg");
        else
            QTest::keyClick(user.find("txtAge", "frameEcg"), Qt::Key_Return);
        QCOMPARE(reader.texts(), QStringList(QStringLiteral("critical, Error: Device not found")));
        QVERIFY(user.window.isEnabled());
        QVERIFY(!openMonitor());
        QCOMPARE(user.text("txtLastName"), QStringLiteral("Diaz"));
        QVERIFY(studyDatabase()->listStudies().empty());
        QVERIFY(RecentStudies::shown().empty());
        QVERIFY(user.window.close());
    }

    void nothingStartsWithoutAName()
    {
        BoxReader reader;
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Diaz");
        QTest::keyClick(user.find("txtLastName", "frameEcg"), Qt::Key_Return);
        user.click("btnNewStudyEcg");
        QTest::qWait(50);
        QVERIFY(reader.boxes().empty());
        QVERIFY(user.find("frameEcg")->isVisible());
    }

    void aNameThatMakesNoFileIsAnError()
    {
        QVERIFY(m_home.useDemo());
        BoxReader reader;
        LauncherUser user;
        user.openEcg();
        user.type("txtLastName", "Di/az");
        user.type("txtFirstName", "Ana");
        user.click("btnStartEcg");
        QCOMPARE(reader.texts(), QStringList(QStringLiteral("critical, Error: Cannot create file")));
        QVERIFY(user.window.isEnabled());
        QVERIFY(studyDatabase()->listStudies().empty());
    }

    void tabGoesThroughTheFieldsInTheirOrder()
    {
        LauncherUser user;
        user.openEcg();
        user.find("txtLastName", "frameEcg")->setFocus();
        user.type("txtLastName", "Diaz");
        user.type("txtFirstName", "Ana");
        QStringList names;
        for (int i = 0; i < 10; ++i) {
            names << user.window.focusWidget()->objectName();
            QTest::keyClick(user.window.focusWidget(), Qt::Key_Tab);
        }
        QCOMPARE(names.join(QLatin1Char(' ')),
                 QStringLiteral("txtLastName txtFirstName txtAge btnMale btnFemale txtPatientId txtPersonId "
                                "btnMoreEcg btnStartEcg btnOpenStudy"));
    }

    void whatThePatientHadComesBackIntoTheFields_data()
    {
        QTest::addColumn<QByteArray>("sex");
        for (const char* sex : {"M", "F", ""})
            QTest::newRow(*sex ? sex : "none") << QByteArray(sex);
    }

    void whatThePatientHadComesBackIntoTheFields()
    {
        QFETCH(QByteArray, sex);
        const TQuickPatient patient{
            QStringLiteral("Diaz"), QStringLiteral("Ana"),  QStringLiteral("50"), "19740102", sex,
            QStringLiteral("H-7"),  QStringLiteral("30111")};
        QuickFields fields;
        fields.setPatient({{}, {}, {}, {}, "M", {}, QStringLiteral("older")});
        fields.setPatient(quickPatient(quickEcgInfo(patient, QDateTime::currentDateTime())));
        const TQuickPatient back = fields.patient();
        QCOMPARE(back.lastName, patient.lastName);
        QCOMPARE(back.firstName, patient.firstName);
        QCOMPARE(back.age, patient.age);
        QCOMPARE(back.birthDate, patient.birthDate);
        QCOMPARE(back.sex, patient.sex);
        QCOMPARE(back.patientId, patient.patientId);
        QCOMPARE(back.personId, patient.personId);
    }

private:
    TestHome m_home;
};

QTEST_MAIN(LauncherFieldsTest)
#include "LauncherFieldsTest.moc"
