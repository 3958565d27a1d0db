#pragma once

#include "jImage.h"
#include "jString.h"

#include <QImage>
#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

// Makes image thumbnails on a worker thread. The UI thread asks with
// request(); the worker reads and decodes the file (through the engine's
// TextureManager decoder), picks the smallest mip level that still covers
// the thumbnail and scales it down; results wait in a queue that the UI
// thread drains, emitting thumbnailReady (or thumbnailFailed with the
// reason) there. The newest request is served first, so the items the user
// is looking at now come before those scrolled past.
//
// The worker never logs (the engine log is not thread-safe): reasons travel
// back with the results and are logged by whoever handles the signal.
class AssetThumbnailer : public QObject {
    Q_OBJECT

public:
    explicit AssetThumbnailer(int size, QObject* parent = nullptr);
    ~AssetThumbnailer() override;

    // Queues the image at a root-relative path (resolved for reading here,
    // on the calling thread). Callers ask once per path.
    void request(const jString& path);
    // Forgets the requests not yet started (their items went out of view).
    void cancelPending();
    // Delivers the finished results now; returns how many.
    size_t drain();
    // Requests waiting or being worked on.
    size_t getBusyCount() const;

    // Makes one thumbnail from a file: the picture scaled to fit size x size,
    // keeping its aspect (framed). A null image and a reason on failure.
    static QImage make(const jString& absolutePath, int size, jString& reason);
    // Reads and decodes an image file with the engine's decoder, without its
    // cache and without logging.
    static bool decodeFile(const jString& absolutePath, jImage& image, jString& reason);
    // A picture scaled to fit size x size over a checkerboard, in a thin frame.
    static QImage framed(const QImage& picture, int size);

signals:
    void thumbnailReady(const QString& path, const QImage& image);
    void thumbnailFailed(const QString& path, const QString& reason);

private:
    struct Request {
        jString path;
        jString absolutePath;
    };
    struct Result {
        jString path;
        QImage image;
        jString reason;
    };

    void run();

    const int m_size;
    mutable std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Request> m_requests;
    std::vector<Result> m_results;
    size_t m_working = 0;
    bool m_drainPosted = false;
    bool m_stop = false;
    std::thread m_worker;
};
