#pragma once

#include "cli/ConsoleTool.h"

#include <QElapsedTimer>
#include <QtTest>

#include <csignal>

/// Words without blanks in them.
inline QStringList wordsOf(const char* text)
{
    return QString::fromUtf8(text).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

/// `velantor-cli record` while it runs. The demonstration lies in no place where the tool looks by itself, so
/// the words "DEMO" in the options stand for the source with its file.
class TRecording
{
public:
    TRecording(const QString& folder, const QStringList& options)
    {
        QStringList words{QStringLiteral("--data"), folder, QStringLiteral("record")};
        for (const QString& option : options) {
            if (option == QLatin1String("DEMO"))
                words << QStringLiteral("--source") << QStringLiteral("demo:" ECG500);
            else
                words << option;
        }
        process.setProgram(QStringLiteral(VELANTOR_CLI));
        process.setArguments(words);
    }
    ~TRecording()
    {
        process.kill();
        process.waitForFinished();
    }

    void start() { process.start(); }

    /// The lines so far, or those that tell of `event` alone.
    QList<QJsonObject> lines(const char* event = nullptr)
    {
        takeOutput();
        QList<QJsonObject> found;
        for (const QByteArray& line : m_output.left(m_output.lastIndexOf('\n') + 1).split('\n')) {
            const QJsonObject object = QJsonDocument::fromJson(line).object();
            // Whoever reads along must understand every line.
            if (!line.isEmpty() && !object.value(QLatin1String("event")).isString())
                QTest::qFail(("No event: " + line).constData(), __FILE__, __LINE__);
            if (!line.isEmpty() && (!event || object.value(QLatin1String("event")) == QLatin1String(event)))
                found << object;
        }
        return found;
    }

    /// Waits until there are so many lines of `event`; false if they do not come.
    bool waitFor(const char* event, int count = 1, int timeoutMs = 30000)
    {
        QElapsedTimer timer;
        timer.start();
        while (lines(event).size() < count && timer.elapsed() < timeoutMs) {
            if (process.state() == QProcess::NotRunning)
                return lines(event).size() >= count;
            process.waitForReadyRead(50);
        }
        return lines(event).size() >= count;
    }

    void send(int signalNumber) { ::kill(static_cast<pid_t>(process.processId()), signalNumber); }

    /// The exit status when it has ended, -1 if it crashed, was killed or goes on for more than four minutes.
    int wait()
    {
        const bool ended = process.state() == QProcess::NotRunning || process.waitForFinished(240000);
        takeOutput();
        return ended && process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    }

    int run()
    {
        start();
        return wait();
    }

    QByteArray error() { return process.readAllStandardError(); }
    int id() { return lines("started").value(0).value(QLatin1String("id")).toInt(); }

    QProcess process;

private:
    void takeOutput() { m_output += process.readAllStandardOutput(); }

    QByteArray m_output;
};

/// What the tool prints for a study.
inline QJsonObject shown(const QString& folder, int id)
{
    const TResult result =
        runTool({QStringLiteral("--data"), folder, QStringLiteral("show"), QString::number(id)});
    return result.status == 0 ? result.lines().value(0) : QJsonObject();
}
