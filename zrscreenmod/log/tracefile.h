// A file that is written while the process may crash.
#pragma once

#include <QFile>
#include <QString>

/// What append() has taken is the system's when it returns, and survives the process. The caller
/// sees to it that one thread is in it at a time. Logs nothing.
class TraceFile
{
public:
    /// Renames a file that is there, over an earlier one of that name; nothing where there is none,
    /// or a device. @return false when the system refuses
    [[nodiscard]] static bool moveAside(const QString& path, const QString& newPath);

    /// Begins the file anew.
    explicit TraceFile(const QString& path);

    /// After the first failure, which the construction may be, nothing is written any more.
    void append(const QByteArray& bytes);
    void append(const uchar* bytes, qint64 count);
    /// Bytes that were written.
    [[nodiscard]] qint64 size() const { return m_size; }
    [[nodiscard]] bool hasFailed() const { return m_failed; }
    /// Which file, and what the system says of it.
    [[nodiscard]] QString problem() const;

private:
    QFile m_file;
    qint64 m_size = 0;
    bool m_failed = false;
};
