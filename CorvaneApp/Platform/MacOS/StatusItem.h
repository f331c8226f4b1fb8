#pragma once

#include "Platform/StatusItem.h"

#include <memory>

namespace corvane {

/// A menu bar item of variable width: the symbol, and the count as its title.
class MacStatusItem : public StatusItem {
    Q_OBJECT

  public:
    MacStatusItem();
    ~MacStatusItem() override;

    void show(int waitingCount, const QString& label, const QString& toolTip) override;

    /// Not used: a press always opens the panel.
    void setMenu(QMenu* menu) override;

    [[nodiscard]] bool isAvailable() const override { return true; }
    [[nodiscard]] QRect place() const override;

    /// The native item (an NSStatusItem), for inspection from outside; null before it is first shown.
    [[nodiscard]] void* handle() const;

  private:
    struct Parts;
    std::unique_ptr<Parts> parts_;
};

} // namespace corvane
