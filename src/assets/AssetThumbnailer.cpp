#include "AssetThumbnailer.h"

#include "AssetIcons.h"
#include "FileReader.h"
#include "TextureManager.h"
#include "jDir.h"

#include <QPainter>

AssetThumbnailer::AssetThumbnailer(int size, QObject* parent)
    : QObject(parent), m_size(size), m_worker([this] { run(); })
{
}

AssetThumbnailer::~AssetThumbnailer()
{
    {
        std::lock_guard lock(m_mutex);
        m_stop = true;
        m_requests.clear();
    }
    m_wake.notify_all();
    m_worker.join();
}

void AssetThumbnailer::request(const jString& path)
{
    Request request{path, jDir::resolveRead(path)};
    {
        std::lock_guard lock(m_mutex);
        m_requests.push_back(std::move(request));
    }
    m_wake.notify_one();
}

void AssetThumbnailer::cancelPending()
{
    std::lock_guard lock(m_mutex);
    m_requests.clear();
}

size_t AssetThumbnailer::getBusyCount() const
{
    std::lock_guard lock(m_mutex);
    return m_requests.size() + m_working;
}

size_t AssetThumbnailer::drain()
{
    std::vector<Result> results;
    {
        std::lock_guard lock(m_mutex);
        results.swap(m_results);
        m_drainPosted = false;
    }
    for (const Result& result : results) {
        const QString path = QString::fromStdString(result.path);
        if (result.image.isNull())
            emit thumbnailFailed(path, QString::fromStdString(result.reason));
        else
            emit thumbnailReady(path, result.image);
    }
    return results.size();
}

void AssetThumbnailer::run()
{
    std::unique_lock lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_stop || !m_requests.empty(); });
        if (m_stop)
            return;
        Request request = std::move(m_requests.back());
        m_requests.pop_back();
        ++m_working;
        lock.unlock();

        Result result{std::move(request.path), {}, {}};
        result.image = make(request.absolutePath, m_size, result.reason);

        lock.lock();
        --m_working;
        m_results.push_back(std::move(result));
        // One queued drain call per batch of results.
        if (!m_drainPosted) {
            m_drainPosted = true;
            QMetaObject::invokeMethod(this, &AssetThumbnailer::drain, Qt::QueuedConnection);
        }
    }
}

bool AssetThumbnailer::decodeFile(const jString& absolutePath, jImage& image, jString& reason)
{
    jString bytes;
    if (FileReader::read(absolutePath, TextureManager::MaxFileBytes, bytes, reason) != FileReader::Status::Read)
        return false;
    return TextureManager::decode(reinterpret_cast<const uint8_t*>(bytes.data()), bytes.size(), absolutePath, image,
                                  reason);
}

QImage AssetThumbnailer::make(const jString& absolutePath, int size, jString& reason)
{
    jImage image;
    if (!decodeFile(absolutePath, image, reason))
        return {};
    // The smallest level still at least as large as the thumbnail.
    int level = 0;
    while (level + 1 < image.getMipLevels() && image.getLevelWidth(level + 1) >= size
           && image.getLevelHeight(level + 1) >= size)
        ++level;
    QImage picture = AssetIcons::toQImage(image, level);
    if (picture.isNull()) {
        reason = "no pixels";
        return {};
    }
    return framed(picture, size);
}

QImage AssetThumbnailer::framed(const QImage& picture, int size)
{
    // Large pictures are filtered down; small ones are blown up pixel by
    // pixel, so a 4 x 4 swatch shows as a swatch rather than a dot.
    const bool larger = picture.width() > size || picture.height() > size;
    const QImage scaled = picture.scaled(size, size, Qt::KeepAspectRatio,
                                         larger ? Qt::SmoothTransformation : Qt::FastTransformation);
    QImage thumbnail(scaled.size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&thumbnail);
    // A checkerboard shows through transparent pixels, and a thin frame
    // keeps a white or black picture apart from the background.
    constexpr int kCheck = 6;
    for (int y = 0; y < thumbnail.height(); y += kCheck)
        for (int x = 0; x < thumbnail.width(); x += kCheck)
            painter.fillRect(x, y, kCheck, kCheck, ((x + y) / kCheck) % 2 ? QColor(200, 200, 200) : QColor(240, 240, 240));
    painter.drawImage(0, 0, scaled);
    painter.setPen(QColor(0, 0, 0, 110));
    painter.drawRect(QRectF(0.5, 0.5, thumbnail.width() - 1, thumbnail.height() - 1));
    return thumbnail;
}
