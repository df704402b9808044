// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDesktopServices>
#include <QList>
#include <QObject>
#include <QUrl>

/// Keeps the files that are handed to the system while it lives.
class OpenedUrls final : public QObject
{
    Q_OBJECT

public:
    OpenedUrls() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "note"); }
    ~OpenedUrls() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    /// The paths since the last call.
    [[nodiscard]] QStringList take() { return std::exchange(m_paths, {}); }

public slots:
    void note(const QUrl &url) { m_paths << url.toLocalFile(); }

private:
    QStringList m_paths;
};
