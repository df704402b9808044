// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#include "processing/openingchecks.h"

#include "account/licencegate.h"
#include "base/messageboxcustom.h"
#include "base/programdata.h"
#include "processing/processingview.h"
#include "service/connectivity.h"
#include "service/tekoserver.h"

#include <QCoreApplication>
#include <QPointer>

bool closesOffline(TekoServer &server, const ProgramData &store, const QObject *opening)
{
    const QPointer<const QObject> guard(opening);
    const bool isOnline = online(server.networkAccess(), store.endpoints().connectivity, opening);
    if (isOnline || !guard)
        return false;
    const OfflineNotice notice = offlineNotice(store);
    MessageBoxCustom::critical(notice.title, notice.text);
    return !guard.isNull();
}

bool closesAtFilesLimit(TekoServer &server, const ProgramData &store, const ProcessingView &view,
                        const QObject *opening)
{
    const QPointer<const QObject> guard(opening);
    const int left = server.processedFilesRemains(store.user().hash, opening);
    if (!guard || !isDailyLimitReached(left) || !view.isLayer("select_instrument"))
        return false;
    MessageBoxCustom::critical(
        QCoreApplication::translate("FileProcessing", "Files Limit"),
        QCoreApplication::translate("FileProcessing",
                                    "You have already processed 10 files, the maximum daily number "
                                    "you can process as a customer."));
    return !guard.isNull();
}
