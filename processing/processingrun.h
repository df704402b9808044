// SPDX-FileCopyrightText: The TEKO authors
// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "results/resultnames.h"
#include "service/workerthread.h"

#include <QString>
#include <QStringList>

#include <atomic>
#include <memory>
#include <optional>

class ConvertingFile;
class PictureProbe;
class TekoServer;
struct UserRecord;

/// The file that the user chose and what was prepared from it. Used by several runs.
struct Source
{
    QString path; ///< the user's own file
    QString wavPath; ///< its WAV file in the temporary folder; empty before the first run
    bool isUploaded = false; ///< the service has acknowledged the WAV file
    std::optional<bool> hasPicture; ///< empty until it was probed

    [[nodiscard]] QString name() const; ///< without folder and last suffix
    [[nodiscard]] bool hasWav() const;
    /// Deletes the local WAV file. Returns its file name, under which the service may have it;
    /// empty when neither has one.
    [[nodiscard]] QString discardWav();
};

/// One run of a source, from "PROCESS" to its results. Always ended by destroying it: the
/// conversion stops, requests are aborted, downloads that were not converted are removed, and so is
/// a WAV file that the service never acknowledged. GUI thread only.
class ProcessingRun final
{
public:
    /// Server and source must outlive the run. The format's extension is in lower case.
    ProcessingRun(TekoServer &server, Source &source, const QString &instrument,
                  const QString &extension);
    ~ProcessingRun();
    Q_DISABLE_COPY_MOVE(ProcessingRun)

    [[nodiscard]] const QString &instrument() const { return m_instrument; }
    [[nodiscard]] const QString &extension() const { return m_extension; }
    /// The service's number of the job; 0 before it is known.
    [[nodiscard]] int songId() const { return m_songId; }
    void setSongId(int id) { m_songId = id; }

    /// The thread of the workers below.
    [[nodiscard]] WorkerThread &worker() { return m_worker; }
    /// Whether ffmpeg is run for the results or, unless the service has it, the source.
    [[nodiscard]] bool needsConversion(bool isSourceSent) const;
    /// Chooses a name for the WAV file in a folder and, for a WAV source, copies it. Returns
    /// whether no conversion is needed or possible; the WAV file is then missing if something
    /// failed.
    [[nodiscard]] bool prepareWithoutConverting(const QString &folder);
    [[nodiscard]] std::unique_ptr<ConvertingFile> uploadConverter() const;
    [[nodiscard]] std::unique_ptr<PictureProbe> pictureProbe() const;
    /// Converts the download of a result, which must be one of results().
    [[nodiscard]] std::unique_ptr<ConvertingFile> finalConverter(const QString &result) const;

    /// Whether a video result was requested but the source, which has a video suffix, contains no
    /// picture. Empty while that is not known.
    [[nodiscard]] std::optional<bool> lacksPicture() const;

    /// Uploads the WAV file, or has the service process the uploaded one again. Returns an error
    /// message when nothing could be sent, else empty.
    [[nodiscard]] QString send(const UserRecord &user);

    /// Picks the results' names in a folder and downloads both, once the service has them ready.
    void fetchResults(const QString &folder);
    /// The final paths; empty before fetchResults().
    [[nodiscard]] const ResultPaths &results() const { return m_results; }
    [[nodiscard]] bool areResultsReady() const { return m_results != ResultPaths(); }

    /// Stores the percentage of the first or the second download. Returns true once, when both
    /// reach 100.
    [[nodiscard]] bool updateDownloadPercent(bool isSecond, double percent);

    /// Renames downloads to their final names, unconverted. Returns the result that could not be
    /// saved, or empty.
    [[nodiscard]] QString moveDownloads() const;
    /// The first result that is missing; empty when both are there.
    [[nodiscard]] QString missingResult() const;
    /// Saves downloads that could not be converted as WAV files. Returns their paths.
    [[nodiscard]] QStringList saveUnconverted() const;

private:
    TekoServer &m_server;
    Source &m_source;
    const QString m_instrument;
    const QString m_extension;
    int m_songId = 0;
    std::atomic<int> m_cancelState = 0; ///< 1 stops the worker
    WorkerThread m_worker;
    ResultPaths m_results;
    double m_percents[2] = {0, 0};
};
