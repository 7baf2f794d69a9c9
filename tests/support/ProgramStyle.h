#pragma once

#include "res/DarkStyle.h"
#include "res/Resources.h"

#include <QApplication>
#include <QFile>
#include <QtTest>

/// The look that the program gives its windows.
inline void wearTheStyle()
{
    initResources();
    QApplication::setStyle(new DarkStyle);
    QFile style(QStringLiteral(":/styles/dark.css"));
    if (!style.open(QIODevice::ReadOnly))
        qFatal("There is no style");
    qApp->setStyleSheet(QString::fromUtf8(style.readAll()));
}
