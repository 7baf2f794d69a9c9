#pragma once

#include <QSharedMemory>
#include <QString>

/// Marks this process as the running instance of the program, for as long as the object lives. The mark is a
/// shared memory segment whose existence alone counts. Needs the organization and application name to be set.
class TSingleInstance
{
public:
    TSingleInstance();
    TSingleInstance(const TSingleInstance&) = delete;
    TSingleInstance& operator=(const TSingleInstance&) = delete;

    /// False if another instance runs, or the segment cannot be had for another reason.
    bool isFirst() const { return m_isFirst; }
    /// Organization and application name, as messages name the program.
    QString key() const { return m_memory.key(); }

private:
    void removeOrphan();

    QSharedMemory m_memory;
    bool m_isFirst = false;
};
