#include "support/FormTexts.h"
#include "LauncherUser.h"
#include "dialogs/StudyDialog.h"
#include "windows/MonitorSession.h"

#include <QListWidget>
#include <QPushButton>

/// The texts of all windows, in both languages.
class FormTextsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { wearTheStyle(); }
    void init() { m_home = std::make_unique<TestHome>(); }
    void cleanup() { m_home.reset(); }

    void aRepeatedKeyIsFound();
    void keysOfTheLauncherAreUnique_data();
    void keysOfTheLauncherAreUnique();
    void keysOfTheStudyDialogAreUnique_data();
    void keysOfTheStudyDialogAreUnique();
    void keysOfTheMonitorAreUnique_data() { tableOfLanguages(); }
    void keysOfTheMonitorAreUnique();

private:
    static void tableOfLanguages();

    std::unique_ptr<TestHome> m_home;
};

void FormTextsTest::tableOfLanguages()
{
    QTest::addColumn<bool>("isSpanish");
    QTest::newRow("English") << false;
    QTest::newRow("Spanish") << true;
}

void FormTextsTest::aRepeatedKeyIsFound()
{
    QWidget window;
    auto* field = new QLineEdit(&window);
    auto* label = new QLabel(QStringLiteral("&Name"), &window);
    label->setObjectName(QStringLiteral("label"));
    label->setBuddy(field);
    auto* button = new QPushButton(QStringLiteral("&Open"), &window);
    button->setObjectName(QStringLiteral("button"));
    window.show();
    QCOMPARE(repeatedKeys(window), QStringList());
    button->setText(QStringLiteral("Ope&n"));
    QCOMPARE(repeatedKeys(window), QStringList(QStringLiteral("Alt+N: label button")));
    button->hide();
    QCOMPARE(repeatedKeys(window), QStringList());
}

void FormTextsTest::keysOfTheLauncherAreUnique_data()
{
    QTest::addColumn<QByteArray>("button");
    QTest::addColumn<QByteArray>("section");
    QTest::addColumn<bool>("isSpanish");
    // How many keys there are at least.
    QTest::addColumn<int>("count");
    for (const bool isSpanish : {false, true}) {
        const char* language = isSpanish ? "Spanish" : "English";
        const auto row = [&](const char* button, const char* section, int count) {
            QTest::addRow("%s %s", language, section)
                << QByteArray(button) << QByteArray(section) << isSpanish << count;
        };
        row("", "closed", 4);
        row("btnNewStudyStress", "frameStress", 13);
        row("btnNewStudyEcg", "frameEcg", 12);
        row("btnOpenStudy", "frameOpen", 6);
    }
}

void FormTextsTest::keysOfTheLauncherAreUnique()
{
    QFETCH(QByteArray, button);
    QFETCH(QByteArray, section);
    QFETCH(bool, isSpanish);
    QFETCH(int, count);
    const TLanguage language(VELANTOR_LANGUAGES, isSpanish);
    LauncherUser user;
    if (!button.isEmpty())
        user.open(button.constData(), section.constData());
    QCOMPARE(repeatedKeys(user.window), QStringList());
    const int keys = keysOf(user.window).size();
    QVERIFY2(keys >= count, QByteArray::number(keys).constData());
    QCOMPARE(cutTexts(user.window), QStringList());
}

void FormTextsTest::keysOfTheStudyDialogAreUnique_data()
{
    QTest::addColumn<QByteArray>("kind");
    QTest::addColumn<bool>("isNew");
    QTest::addColumn<bool>("isSpanish");
    for (const char* kind : {"ECG", "Stress test"}) {
        for (const bool isNew : {true, false}) {
            for (const bool isSpanish : {false, true})
                QTest::addRow("%s %s, %s", isNew ? "new" : "existing", kind,
                              isSpanish ? "Spanish" : "English")
                    << QByteArray(kind) << isNew << isSpanish;
        }
    }
}

void FormTextsTest::keysOfTheStudyDialogAreUnique()
{
    QFETCH(QByteArray, kind);
    QFETCH(bool, isNew);
    QFETCH(bool, isSpanish);
    const TLanguage language(VELANTOR_LANGUAGES, isSpanish);
    StudyInfo info;
    info.studyType = kind;
    StudyDialog dialog(nullptr, info, isNew);
    dialog.show();
    auto* list = dialog.findChild<QListWidget*>();
    for (int page = 0; page < list->count(); ++page) {
        list->setCurrentRow(page);
        QCOMPARE(repeatedKeys(dialog), QStringList());
        // The two that turn the pages.
        QVERIFY(keysOf(dialog).size() >= 2);
    }
}

void FormTextsTest::keysOfTheMonitorAreUnique()
{
    QFETCH(bool, isSpanish);
    const TLanguage language(VELANTOR_LANGUAGES, isSpanish);
    const MonitorSession session;
    QVERIFY(session.window->isVisible());
    QCOMPARE(repeatedKeys(*session.window), QStringList());
}

QTEST_MAIN(FormTextsTest)
#include "FormTextsTest.moc"
