#include "equipment/KipnetMessages.h"

#include <QtTest>

/// The check sums here were added up by hand.
class KipnetMessagesTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void messagesWithoutAValueAreFixed()
    {
        QCOMPARE(QByteArray::fromStdString(kipnet::goMessage()), QByteArray(";2GO00:"));   // 200
        QCOMPARE(QByteArray::fromStdString(kipnet::stopMessage()), QByteArray(";2ST17:")); // 217
    }

    void aValueIsTruncatedHeldAndSummed_data()
    {
        QTest::addColumn<int>("kind");
        QTest::addColumn<double>("value");
        QTest::addColumn<QByteArray>("message");
        const auto row = [](char kind, double value, const char* message) {
            QTest::addRow("%c %g", kind, value) << int(kind) << value << QByteArray(message);
        };
        row('V', 0.0, ";2V000072:");
        row('V', 2.7, ";2V002781:");
        row('V', 5.0, ";2V005077:");
        row('V', 5.49, ";2V005481:");
        row('V', 40.0, ";2V040076:");
        row('V', 40.1, ";2V040076:");
        row('V', 1e300, ";2V040076:");
        row('V', -1.0, ";2V000072:");
        row('E', 0.0, ";2E000055:");
        row('E', 10.0, ";2E010056:");
        row('E', 12.59, ";2E012563:");
        row('E', 20.0, ";2E020057:");
        row('E', 25.0, ";2E020057:");
        row('N', 0.0, ";2N000064:");
        row('N', 25.9, ";2N002571:");
        row('N', 100.0, ";2N010065:");
        row('N', 799.0, ";2N079989:");
        row('N', 800.0, ";2N080072:");
        row('N', 900.0, ";2N080072:");
    }

    void aValueIsTruncatedHeldAndSummed()
    {
        QFETCH(int, kind);
        QFETCH(double, value);
        QFETCH(QByteArray, message);
        const std::string made = kind == 'V'   ? kipnet::speedMessage(value)
                                 : kind == 'E' ? kipnet::inclineMessage(value)
                                               : kipnet::loadMessage(value);
        QCOMPARE(QByteArray::fromStdString(made), message);
    }

    void everyTenthKeepsItsDigits()
    {
        for (int tenths = 0; tenths <= 400; ++tenths) {
            const QByteArray message = QByteArray::fromStdString(kipnet::speedMessage(tenths / 10.0));
            QCOMPARE(message.mid(3, 4), QByteArray::number(tenths).rightJustified(4, '0'));
        }
    }
};

QTEST_GUILESS_MAIN(KipnetMessagesTest)
#include "KipnetMessagesTest.moc"
