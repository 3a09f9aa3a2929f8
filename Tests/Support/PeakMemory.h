// How much memory this process took at most, beyond what it had. Linux; elsewhere it measures nothing and says so.
#pragma once
#include <QByteArray>
#include <QFile>
#include <QtGlobal>

class PeakMemory {
public:
    // The sanitizers keep freed memory and shadow the rest: their numbers say nothing on this program's.
#if defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
    static constexpr bool isMeaningful = false;
#else
    static constexpr bool isMeaningful = true;
#endif
#else
    static constexpr bool isMeaningful = true;
#endif

    void begin()
    {
        QFile reset(QStringLiteral("/proc/self/clear_refs"));
        if (reset.open(QIODevice::WriteOnly))
            reset.write("5"); // the peak counts from here
        m_before = read("VmRSS:");
    }
    qint64 growth() const { return read("VmHWM:") - m_before; } // bytes

private:
    static qint64 read(const QByteArray &key)
    {
        QFile status(QStringLiteral("/proc/self/status"));
        if (!status.open(QIODevice::ReadOnly))
            return 0;
        const QByteArray text = status.readAll();
        const auto at = text.indexOf(key);
        return at < 0 ? 0 : text.mid(at + key.size()).trimmed().split(' ').first().toLongLong() * 1024;
    }
    qint64 m_before = 0;
};
