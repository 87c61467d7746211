#include "PindleMac/views/Symbols.h"

#include <QFile>
#include <QPainter>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <cmath>

static void loadResources() {
    // The resource lives in a static library, whose unused initialisers the linker drops.
    Q_INIT_RESOURCE(symbols);
}

namespace pindle::symbols {

namespace {

QString path(const QString &name) {
    loadResources();
    return QStringLiteral(":/pindle/symbols/%1.svg").arg(name);
}

QPixmap render(const QString &name, QSize pixels, const QColor &colour) {
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(path(name)).render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(pixmap.rect(), colour);
    return pixmap;
}

} // namespace

bool exists(const QString &name) {
    return QFile::exists(path(name));
}

QByteArray document(const QString &name) {
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void draw(QPainter &painter, const QString &name, const QRectF &rect, const QColor &colour) {
    if (!exists(name))
        return;
    const qreal ratio = painter.device()->devicePixelRatioF();
    const QSize pixels(static_cast<int>(std::ceil(rect.width() * ratio)),
                       static_cast<int>(std::ceil(rect.height() * ratio)));
    const QString key = QStringLiteral("pindle.symbol/%1/%2x%3/%4")
                            .arg(name)
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(colour.rgba());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = render(name, pixels, colour);
        QPixmapCache::insert(key, pixmap);
    }
    painter.drawPixmap(rect, pixmap, QRectF(pixmap.rect()));
}

} // namespace pindle::symbols
