#include "Desktop/Support/Picture.h"

#include <QImage>
#include <QString>

#include <cstring>
#include <stdexcept>

namespace corvane::test {

Color Picture::at(int x, int y) const {
    if (x < 0 || y < 0 || x >= width || y >= height) return {};
    return {
        pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)] &
        0xFFFFFF};
}

double Picture::share(Rect area, Color color, int tolerance) const {
    int count = 0;
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x)
            count += at(x, y).isNear(color, tolerance) ? 1 : 0;
    }
    const int size = area.width * area.height;
    return size > 0 ? static_cast<double>(count) / size : 0;
}

Picture Picture::part(Rect area) const {
    Picture result{area.width, area.height, {}};
    result.pixels.reserve(static_cast<std::size_t>(area.width) * static_cast<std::size_t>(area.height));
    for (int y = area.y; y < area.bottom(); ++y) {
        for (int x = area.x; x < area.right(); ++x)
            result.pixels.push_back(at(x, y).rgb);
    }
    return result;
}

std::size_t Picture::differences(const Picture& other, int tolerance) const {
    if (width != other.width || height != other.height) return pixels.size();
    std::size_t count = 0;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        if (!Color{pixels[i] & 0xFFFFFF}.isNear({other.pixels[i] & 0xFFFFFF}, tolerance)) ++count;
    }
    return count;
}

void Picture::save(const std::filesystem::path& file) const {
    QImage image(width, height, QImage::Format_RGB32);
    const std::size_t row = static_cast<std::size_t>(width) * sizeof(std::uint32_t);
    for (int y = 0; y < height; ++y) {
        std::memcpy(image.scanLine(y), &pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width)],
                    row);
    }
    if (!image.save(QString::fromStdString(file.string()), "PNG"))
        throw std::runtime_error("cannot write " + file.string());
}

} // namespace corvane::test
