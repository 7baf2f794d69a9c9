#include "study/JsonText.h"

QByteArray compactJson(const QJsonDocument& document)
{
    // Outside of texts the document is plain ASCII, so that the mark can stand only where an escape may.
    return document.toJson(QJsonDocument::Compact).replace("\xef\xbb\xbf", "\\ufeff");
}
