#include <app/api/qlumlog.h>

#include <app/api/qlumuatrace.h>

#include <QString>

QlumLog::QlumLog(const QString& source, unsigned int serverId) : m_source(source), m_serverId(serverId) {}

void QlumLog::write(int level, const QString& text) const
{
    QlumUaTrace::log(level, text, m_source, m_serverId);
}

void QlumLog::writeStatus(int level, const QString& text, unsigned int statusCode) const
{
    QlumUaTrace::logUaStatusCode(level, text, statusCode, m_source, m_serverId);
}
