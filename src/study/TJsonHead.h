#pragma once

#include <QByteArray>
#include <QJsonObject>

/// Takes the members `study` and `patient` out of the text of a study's document, which may come in pieces,
/// so that lists of studies never parse megabytes of results. The value of every other member is passed over,
/// its brackets and strings excepted; damage in there that leaves these whole goes unseen.
class TJsonHead
{
public:
    void add(const char* data, qint64 size);

    /// The document, with a 0 in place of each value that was passed over; empty if it is broken or was cut
    /// short.
    QJsonObject parse() const;

private:
    void addQuoted(const char*& at, const char* end);
    void addStructure(char c);
    void startMember();
    void openBracket(char c);
    void closeBracket(char c);

    /// The document so far, with a 0 for each value that is passed over.
    QByteArray m_kept;
    QByteArray m_openBrackets;
    int m_keyStart = 0;
    bool m_inString = false;
    bool m_escaped = false;
    bool m_skipping = false;
    bool m_broken = false;
};
