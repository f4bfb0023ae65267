#pragma once

#include <QByteArrayList>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

// A home of its own for the desktop's folders, restored afterwards.
class PrivateHome
{
public:
    PrivateHome()
    {
        for (const char* name : {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"})
            m_saved.append(qgetenv(name));
        qputenv("HOME", m_home.path().toUtf8());
        qputenv("XDG_DATA_HOME", (m_home.path() + "/.local/share").toUtf8());
        qputenv("XDG_CONFIG_HOME", (m_home.path() + "/.config").toUtf8());
    }
    ~PrivateHome()
    {
        const char* names[] = {"HOME", "XDG_DATA_HOME", "XDG_CONFIG_HOME"};
        for (int i = 0; i < 3; ++i)
            qputenv(names[i], m_saved[i]);
    }
    QString path(const QString& relative) const { return m_home.path() + "/" + relative; }
    void write(const QString& relative, const QByteArray& text) const
    {
        QDir().mkpath(QFileInfo(path(relative)).absolutePath());
        QFile file(path(relative));
        file.open(QIODevice::WriteOnly);
        file.write(text);
    }
    QString read(const QString& relative) const
    {
        QFile file(path(relative));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

private:
    QTemporaryDir m_home;
    QByteArrayList m_saved;
};
