#include "platform/SingleInstance.h"

#include <QCoreApplication>

namespace {

constexpr int segmentSize = 256;

QString instanceKey()
{
    return QStringLiteral("%1 %2").arg(QCoreApplication::organizationName(),
                                       QCoreApplication::applicationName());
}

} // namespace

TSingleInstance::TSingleInstance() : m_memory(instanceKey())
{
    removeOrphan();
    m_isFirst = m_memory.create(segmentSize, QSharedMemory::ReadWrite);
    if (m_isFirst)
        return;
    // Where the file behind the key had been cleaned away, an orphan shows only once the file is there again.
    removeOrphan();
    m_isFirst = m_memory.create(segmentSize, QSharedMemory::ReadWrite);
}

/// A segment outlives a process that crashed, but the last one to detach takes it away. One that a living
/// instance holds stays.
void TSingleInstance::removeOrphan()
{
    if (m_memory.attach(QSharedMemory::ReadOnly))
        m_memory.detach();
}
