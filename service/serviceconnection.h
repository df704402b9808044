// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "base/programdata.h"
#include "service/embeddedservice.h"

#include <memory>

/// Provides the service endpoints to ProgramData as long as this object lives, and runs the
/// embedded service when none is configured. A service that cannot start, or an address that cannot
/// be used, is reported once in a message box. GUI thread only.
class ServiceConnection final : public QObject
{
    Q_OBJECT

public:
    /// Starts the embedded service if it is wanted and returns at once. The store must outlive this
    /// object.
    explicit ServiceConnection(ProgramData &store);
    ~ServiceConnection() override;

private:
    [[nodiscard]] ServiceEndpoints endpoints();
    void startEmbedded();
    void showProblem(const QString &text);
    void whenStarted(QObject *context, std::function<void()> started);

    ProgramData &m_store;
    std::unique_ptr<EmbeddedService> m_service;
};
