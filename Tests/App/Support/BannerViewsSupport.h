#pragma once

#include "App/Support/Sessions.h"
#include "BannerViews.h"
#include "Controls/Labels.h"

#include <QColor>
#include <QImage>
#include <QRect>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

namespace corvane::test {

/// Creates banners with a clock that stands still, whose buttons record that they were pressed.
class BannerViewsTest : public testing::Test {
  protected:
    [[nodiscard]] std::unique_ptr<WaitingBanner> waitingBanner(const AgentSession& session) {
        return std::make_unique<WaitingBanner>(
            session, [this] { return now_; }, [this] { calls_ += "jump "; }, [this] { calls_ += "snooze "; },
            [this] { calls_ += "close "; });
    }
    [[nodiscard]] std::unique_ptr<DoneBanner> doneBanner(const AgentSession& session) {
        return std::make_unique<DoneBanner>(session, [this] { calls_ += "close "; });
    }

    static std::vector<std::string> texts(const QWidget& banner) {
        std::vector<std::string> result;
        for (const auto* const label : banner.findChildren<LineLabel*>())
            result.push_back(label->text().toStdString());
        return result;
    }

    static QImage render(QWidget& widget, qreal ratio = 1) {
        QImage image((QSizeF(widget.size()) * ratio).toSize(), QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(ratio);
        image.fill(Qt::transparent);
        widget.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
        return image;
    }

    /// The smallest rectangle, in device pixels, around all pixels that are nearly `ink`.
    static QRect inkRect(const QImage& image, const QColor& ink) {
        QRect result;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color = image.pixelColor(x, y);
                constexpr int tolerance = 100; // for antialiased edges
                if (std::abs(color.red() - ink.red()) < tolerance &&
                    std::abs(color.green() - ink.green()) < tolerance &&
                    std::abs(color.blue() - ink.blue()) < tolerance && color.alpha() > tolerance) {
                    result |= QRect(x, y, 1, 1);
                }
            }
        }
        return result;
    }

    const Date start{1'790'000'000, 0};
    Date now_ = start;
    std::string calls_;
};

} // namespace corvane::test
