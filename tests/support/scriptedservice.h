// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/programdata.h"
#include "tests/support/files.h"
#include "tests/support/scriptedserver.h"

#include <QTemporaryDir>

/// An installation of a test's own with a service whose answers make a whole run.
struct ScriptedService
{
    ScriptedService()
    {
        for (const char *name : {"Save", "Temp", "in"})
            QDir(folder.path()).mkdir(QLatin1String(name));
        store.settings().setValue("default_path_save", path("Save"));
        store.settings().setValue("default_path_temp", path("Temp"));
        store.setEndpointSource([this] {
            return ServiceEndpoints{server.url(), server.url("/generate_204"), {}};
        });
        server.on("/generate_204", {ScriptedAnswer::text({}, 204)});
        server.on("/teko-server/processedFilesRemains.php", {ScriptedAnswer::text("5")});
        server.on(proceed, {ScriptedAnswer::text("7")});
        server.on(repeat, {ScriptedAnswer::text("8")});
        server.on(remains, {ScriptedAnswer::text("-1")});
        server.on(download, {ScriptedAnswer::text(address("/a") + '|' + address("/b"))});
        server.on("/a", {ScriptedAnswer::text("instrument")});
        server.on("/b", {ScriptedAnswer::text("the rest")});
        server.on(cancel, {ScriptedAnswer::text("1")});
        server.on(removal, {ScriptedAnswer::text("1")});
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }
    [[nodiscard]] QByteArray address(const QByteArray &name) const
    {
        return server.url(name).toEncoded();
    }
    [[nodiscard]] QStringList saved() const { return contentsOf(path("Save")); }

    const QByteArray proceed = "/teko-server/proceed.php";
    const QByteArray repeat = "/teko-server/repeat.php";
    const QByteArray remains = "/teko-server/remains.php";
    const QByteArray download = "/teko-server/download.php";
    const QByteArray cancel = "/teko-server/cancel.php";
    const QByteArray removal = "/teko-server/removeUploaded.php";
    const QTemporaryDir folder;
    ScriptedServer server;
    ProgramData store{folder.filePath("teko.ini")};
};
