// Renders an SVG picture as an icon file of all sizes that Windows shows, or as a picture of one
// size (pixels): make_icon IN.svg OUT.ico|OUT.png [SIZE]
#include <QBuffer>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>
#include <QtEndian>

#include <cstdio>
#include <cstdlib>

namespace {

constexpr int sizes[] = {16, 24, 32, 48, 64, 256};
// Larger images are stored compressed; smaller ones so that every reader of icons knows them.
constexpr int largestPlain = 48;

template <typename T>
void put(QByteArray &bytes, T value)
{
    value = qToLittleEndian(value);
    bytes.append(reinterpret_cast<const char *>(&value), int(sizeof value));
}

QImage render(QSvgRenderer &picture, int size)
{
    // Drawn larger first: thin parts keep their weight in the small sizes.
    QImage large(size * 4, size * 4, QImage::Format_ARGB32_Premultiplied);
    large.fill(Qt::transparent);
    QPainter painter(&large);
    painter.setRenderHint(QPainter::Antialiasing);
    picture.render(&painter);
    painter.end();
    return large.scaled(size, size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_ARGB32);
}

QByteArray compressed(const QImage &image)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    image.save(&buffer, "PNG", 0);
    return bytes;
}

// A bitmap as icons hold it: twice the height for the mask, rows from below.
QByteArray plain(const QImage &image)
{
    const int size = image.width();
    QByteArray bytes;
    put<quint32>(bytes, 40);
    put<qint32>(bytes, size);
    put<qint32>(bytes, size * 2);
    put<quint16>(bytes, 1);
    put<quint16>(bytes, 32);
    bytes.append(24, '\0');
    for (int y = size - 1; y >= 0; --y) {
        for (int x = 0; x < size; ++x)
            put<quint32>(bytes, image.pixel(x, y));
    }
    QByteArray mask((size + 31) / 32 * 4 * size, '\0');
    for (int y = 0; y < size; ++y) {
        for (int x = 0; x < size; ++x) {
            const int at = (size - 1 - y) * ((size + 31) / 32 * 4) + x / 8;
            if (qAlpha(image.pixel(x, y)) == 0)
                mask[at] = char(mask.at(at) | (0x80 >> (x % 8)));
        }
    }
    return bytes + mask;
}

QByteArray icon(QSvgRenderer &picture)
{
    constexpr int count = int(sizeof sizes / sizeof *sizes);
    QByteArray directory;
    put<quint16>(directory, 0);
    put<quint16>(directory, 1);
    put<quint16>(directory, count);
    QByteArray images;
    for (const int size : sizes) {
        const QImage image = render(picture, size);
        const QByteArray bytes = size > largestPlain ? compressed(image) : plain(image);
        put<quint8>(directory, quint8(size % 256));
        put<quint8>(directory, quint8(size % 256));
        put<quint16>(directory, 0);
        put<quint16>(directory, 1);
        put<quint16>(directory, 32);
        put<quint32>(directory, quint32(bytes.size()));
        put<quint32>(directory, quint32(6 + count * 16 + images.size()));
        images += bytes;
    }
    return directory + images;
}

} // namespace

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const int size = argc == 4 ? std::atoi(argv[3]) : 0;
    if (argc != 3 && (size < 1 || size > 1024)) {
        std::fputs("usage: make_icon IN.svg OUT.ico\n"
                   "       make_icon IN.svg OUT.png SIZE\n",
                   stderr);
        return 2;
    }
    QSvgRenderer picture(QFile::decodeName(argv[1]));
    if (!picture.isValid()) {
        std::fprintf(stderr, "make_icon: cannot read %s\n", argv[1]);
        return 1;
    }
    const QByteArray bytes = size > 0 ? compressed(render(picture, size)) : icon(picture);
    QFile out(QFile::decodeName(argv[2]));
    if (!out.open(QIODevice::WriteOnly) || out.write(bytes) != bytes.size() || !out.flush()) {
        std::fprintf(stderr, "make_icon: cannot write %s\n", argv[2]);
        return 1;
    }
    return 0;
}
