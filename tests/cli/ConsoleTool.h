#pragma once

#include <QByteArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStringList>

/// What a run of velantor-cli left. The target defines VELANTOR_CLI, the path of the tool.
struct TResult
{
    int status = -1; ///< -1 for a tool that crashed or was killed
    QByteArray output;
    QByteArray error;

    QList<QJsonObject> lines() const
    {
        QList<QJsonObject> objects;
        for (const QByteArray& line : output.split('\n')) {
            if (!line.isEmpty())
                objects << QJsonDocument::fromJson(line).object();
        }
        return objects;
    }
};

inline TResult runTool(const QStringList& words, const QString& home = QString())
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    if (!home.isEmpty())
        environment.insert(QStringLiteral("XDG_DATA_HOME"), home);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VELANTOR_CLI), words);
    process.waitForFinished(60000);
    TResult result{process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
                   process.readAllStandardOutput(), process.readAllStandardError()};
    return result;
}

/// One plain line.
inline bool isErrorLine(const QByteArray& text)
{
    return text.size() > 1 && text.count('\n') == 1 && text.endsWith('\n') && !text.startsWith(' ');
}
