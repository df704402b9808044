// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "account/credentials.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <sodium.h>

namespace {

constexpr QByteArrayView fileMark("TEKO1\n");

unsigned char *bytes(QByteArray &data, qsizetype offset = 0)
{
    return reinterpret_cast<unsigned char *>(data.data() + offset);
}

const unsigned char *bytes(QByteArrayView data)
{
    return reinterpret_cast<const unsigned char *>(data.data());
}

void startSodium()
{
    // Later calls do nothing.
    if (sodium_init() < 0)
        qFatal("libsodium cannot be used on this machine");
}

QByteArray toJson(const Credentials &credentials)
{
    return QJsonDocument(QJsonObject{{QStringLiteral("publicKey"), credentials.publicKey},
                                     {QStringLiteral("email"), credentials.email},
                                     {QStringLiteral("hash"), credentials.hash},
                                     {QStringLiteral("accessToken"), credentials.accessToken},
                                     {QStringLiteral("signedOut"), credentials.hasSignedOut},
                                     {QStringLiteral("service"), credentials.service}})
        .toJson(QJsonDocument::Compact);
}

Credentials fromJson(const QByteArray &json)
{
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    return {object.value(QLatin1String("publicKey")).toString(),
            object.value(QLatin1String("email")).toString(),
            object.value(QLatin1String("hash")).toString(),
            object.value(QLatin1String("accessToken")).toString(),
            object.value(QLatin1String("signedOut")).toBool(),
            object.value(QLatin1String("service")).toString()};
}

} // namespace

QByteArray credentialsKey(const QString &text, const QByteArray &machineId)
{
    startSodium();
    const QByteArray secret = text.toUtf8();
    QByteArray key(crypto_secretbox_KEYBYTES, Qt::Uninitialized);
    crypto_generichash_state state;
    crypto_generichash_init(&state, nullptr, 0, size_t(key.size()));
    crypto_generichash_update(&state, bytes(QByteArrayView(secret)), size_t(secret.size()));
    crypto_generichash_update(&state, bytes(QByteArrayView("\n")), 1);
    crypto_generichash_update(&state, bytes(QByteArrayView(machineId)), size_t(machineId.size()));
    crypto_generichash_final(&state, bytes(key), size_t(key.size()));
    return key;
}

QByteArray sealCredentials(const Credentials &credentials, const QByteArray &key)
{
    startSodium();
    const QByteArray plain = toJson(credentials);
    QByteArray nonce(crypto_secretbox_NONCEBYTES, Qt::Uninitialized);
    randombytes_buf(nonce.data(), size_t(nonce.size()));
    QByteArray box(plain.size() + qsizetype(crypto_secretbox_MACBYTES), Qt::Uninitialized);
    crypto_secretbox_easy(bytes(box), bytes(QByteArrayView(plain)), quint64(plain.size()),
                          bytes(QByteArrayView(nonce)), bytes(QByteArrayView(key)));
    return fileMark.toByteArray() + nonce + box;
}

std::optional<Credentials> openCredentials(const QByteArray &sealed, const QByteArray &key)
{
    startSodium();
    constexpr qsizetype nonceSize = crypto_secretbox_NONCEBYTES;
    const qsizetype plainSize =
        sealed.size() - fileMark.size() - nonceSize - qsizetype(crypto_secretbox_MACBYTES);
    if (plainSize < 0 || !sealed.startsWith(fileMark))
        return {};
    const QByteArrayView nonce = QByteArrayView(sealed).sliced(fileMark.size(), nonceSize);
    const QByteArrayView box = QByteArrayView(sealed).sliced(fileMark.size() + nonceSize);
    QByteArray plain(plainSize, Qt::Uninitialized);
    if (crypto_secretbox_open_easy(bytes(plain), bytes(box), quint64(box.size()), bytes(nonce),
                                   bytes(QByteArrayView(key)))
        != 0)
        return {};
    return fromJson(plain);
}
