#include "tracefile.h"

#include <QFileInfo>

bool TraceFile::moveAside(const QString& path, const QString& newPath)
{
    if (!QFileInfo(path).isFile())
        return true;
    QFile::remove(newPath);
    return QFile::rename(path, newPath);
}

TraceFile::TraceFile(const QString& path)
    : m_file(path)
    , m_failed(!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
{
}

void TraceFile::append(const QByteArray& bytes)
{
    append(reinterpret_cast<const uchar*>(bytes.constData()), bytes.size());
}

void TraceFile::append(const uchar* bytes, qint64 count)
{
    if (m_failed)
        return;
    m_failed = m_file.write(reinterpret_cast<const char*>(bytes), count) != count;
    m_size += count;
}

QString TraceFile::problem() const
{
    return m_file.fileName() + QStringLiteral(": ") + m_file.errorString();
}
