// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDir>
#include <QProcess>

/// A file system of 1 MiB, while it lives.
class SmallDisk
{
public:
    explicit SmallDisk(const QString &folder)
        : m_folder(folder)
    {
        QDir().mkpath(folder);
        m_isMounted = run("mount", {"-t", "tmpfs", "-o", "size=1m", "tmpfs", folder});
    }
    ~SmallDisk()
    {
        if (m_isMounted)
            run("umount", {"--lazy", m_folder});
    }
    Q_DISABLE_COPY(SmallDisk)

    [[nodiscard]] bool isMounted() const { return m_isMounted; }

private:
    static bool run(const QString &program, const QStringList &arguments)
    {
        return QProcess::execute(program, arguments) == 0;
    }

    const QString m_folder;
    bool m_isMounted = false;
};
