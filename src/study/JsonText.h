#pragma once

#include <QByteArray>
#include <QJsonDocument>

/// The document as compact JSON that Qt's parser reads back without loss: a byte order mark is written as an
/// escape, since the parser drops one that stands as it is at the beginning of a text.
QByteArray compactJson(const QJsonDocument& document);
