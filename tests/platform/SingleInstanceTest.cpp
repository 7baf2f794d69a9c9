#include "platform/SingleInstance.h"

#include <QProcess>
#include <QtTest>

#include <iostream>
#include <memory>
#include <string>

namespace {

/// Another start of the program: tells whether it is the first instance, then runs until its input ends.
int runInstance()
{
    const TSingleInstance instance;
    std::cout << (instance.isFirst() ? "first" : "refused") << std::endl;
    std::string line;
    std::getline(std::cin, line);
    return 0;
}

} // namespace

class SingleInstanceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    /// Takes away what a killed process left.
    void cleanup() { const TSingleInstance last; }

    void theKeyIsMadeOfTheNames()
    {
        const TSingleInstance instance;
        QCOMPARE(instance.key(), QStringLiteral("Velantor %1").arg(QCoreApplication::applicationName()));
    }

    void theFirstInstanceIsFirstAndReleasesItsPlace()
    {
        for (int i = 0; i < 3; ++i)
            QVERIFY(TSingleInstance().isFirst());
    }

    void aSecondProcessIsRefusedWhileTheFirstLives()
    {
        auto first = std::make_unique<TSingleInstance>();
        QVERIFY(first->isFirst());
        for (int i = 0; i < 3; ++i)
            QCOMPARE(startInstance().second, QByteArray("refused"));
        first.reset();
        QCOMPARE(startInstance().second, QByteArray("first"));
    }

    void thisProcessIsRefusedWhileAnotherLives()
    {
        auto [other, answer] = startInstance();
        QCOMPARE(answer, QByteArray("first"));
        QVERIFY(!TSingleInstance().isFirst());
        QVERIFY(!TSingleInstance().isFirst());
        other->closeWriteChannel();
        QVERIFY(other->waitForFinished());
        QVERIFY(TSingleInstance().isFirst());
    }

    void aKilledProcessDoesNotLockTheUserOut()
    {
        auto [other, answer] = startInstance();
        QCOMPARE(answer, QByteArray("first"));
        other->kill();
        QVERIFY(other->waitForFinished());
        QCOMPARE(other->exitStatus(), QProcess::CrashExit);
        QVERIFY(TSingleInstance().isFirst());
    }

    void aCleanedUpFolderOfTemporaryFilesDoesNotEither()
    {
        auto [other, answer] = startInstance();
        QCOMPARE(answer, QByteArray("first"));
        other->kill();
        QVERIFY(other->waitForFinished());
        // The next file may get the number of this one, and with it the key of what the killed process left.
        const QSharedMemory left(QStringLiteral("Velantor %1").arg(QCoreApplication::applicationName()));
        QVERIFY(QFile::remove(left.nativeKey()));
        QVERIFY(TSingleInstance().isFirst());
    }

private:
    /// Ends with its QProcess.
    static std::pair<std::unique_ptr<QProcess>, QByteArray> startInstance()
    {
        auto process = std::make_unique<QProcess>();
        process->start(QCoreApplication::applicationFilePath(), {QCoreApplication::applicationName()});
        if (!process->waitForStarted() || !process->waitForReadyRead())
            return {std::move(process), QByteArray()};
        const QByteArray answer = process->readLine().trimmed();
        return {std::move(process), answer};
    }
};

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setOrganizationName(QStringLiteral("Velantor"));
    const QString name = application.arguments().value(1);
    if (name.startsWith(QLatin1String("instance "))) {
        QCoreApplication::setApplicationName(name);
        return runInstance();
    }
    // A name of this run's own: a second run beside it, or the program itself, is no second instance.
    QCoreApplication::setApplicationName(
        QStringLiteral("instance %1").arg(QCoreApplication::applicationPid()));
    SingleInstanceTest test;
    return QTest::qExec(&test, argc, argv);
}
#include "SingleInstanceTest.moc"
