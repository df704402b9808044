// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/programdata.h"
#include "tests/support/files.h"
#include "tests/support/scriptedserver.h"

#include <memory>

/// A fresh installation with an application folder in the scratch home, and a service whose answers
/// make a whole run.
struct Installation
{
    Installation()
    {
        QDir(documentsAppFolder()).removeRecursively();
        for (const char *name : {"Save", "Audio", "Logs", "Temp", "in"})
            QDir().mkpath(path(name));
        restart();
        server.on("/generate_204", {ScriptedAnswer::text({}, 204)});
        server.on(filesLeft, {ScriptedAnswer::text("5")});
        server.on(proceed, {ScriptedAnswer::text("7")});
        server.on(repeat, {ScriptedAnswer::text("8")});
        server.on(remains, {ScriptedAnswer::text("-1")});
        server.on(download, {ScriptedAnswer::text(address("/a") + '|' + address("/b"))});
        server.on("/a", {ScriptedAnswer::text("instrument")});
        server.on("/b", {ScriptedAnswer::text("the rest")});
        server.on(cancel, {ScriptedAnswer::text("1")});
        server.on(removal, {ScriptedAnswer::text("1")});
    }

    /// What the next start of the program finds.
    void restart()
    {
        store = std::make_unique<ProgramData>(path("teko.ini"));
        store->setEndpointSource([this] {
            return ServiceEndpoints{server.url(), server.url("/generate_204"), {}};
        });
    }

    /// Signs in without asking the service; the subscription's number makes a subscriber.
    void signIn(const QString &hash, int subscription = 0)
    {
        UserRecord user;
        user.hash = hash;
        user.subscription.id = subscription;
        store->setUser(user);
    }

    void set(const QString &key, const QVariant &value) { store->settings().setValue(key, value); }

    /// Makes a file for the user to choose.
    [[nodiscard]] QString source(const QString &name) const
    {
        return writeFile(path("in/" + name), "RIFF");
    }

    [[nodiscard]] static QString path(const QString &name)
    {
        return documentsAppFolder() + '/' + name;
    }
    [[nodiscard]] QByteArray address(const QByteArray &name) const
    {
        return server.url(name).toEncoded();
    }
    /// The save folder's files, as "name=content".
    [[nodiscard]] static QStringList saved() { return contentsOf(path("Save")); }
    [[nodiscard]] static QStringList temporary() { return filesIn(path("Temp")); }

    static inline const QByteArray proceed = "/teko-server/proceed.php";
    static inline const QByteArray repeat = "/teko-server/repeat.php";
    static inline const QByteArray repeatDemo = "/teko-server/repeatDemo.php";
    static inline const QByteArray remains = "/teko-server/remains.php";
    static inline const QByteArray download = "/teko-server/download.php";
    static inline const QByteArray cancel = "/teko-server/cancel.php";
    static inline const QByteArray removal = "/teko-server/removeUploaded.php";
    static inline const QByteArray filesLeft = "/teko-server/processedFilesRemains.php";
    ScriptedServer server;
    std::unique_ptr<ProgramData> store;
};
