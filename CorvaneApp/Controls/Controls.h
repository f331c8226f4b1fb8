#pragma once

#include "Controls/Buttons.h"

#include <QComboBox>
#include <QVariantAnimation>

#include <functional>
#include <vector>

namespace corvane {

class LineLabel;
class Paragraph;

/// Whether the user asked for reduced motion; queried each time.
using ReduceMotion = std::function<bool()>;

/// A switch of 36 x 20 pixels, a checkable button. Only the knob is animated, and not while the switch is
/// hidden or the user wants reduced motion.
class Switch : public BareButton {
    Q_OBJECT

  public:
    /// `name`: the accessible name, the words beside the switch.
    Switch(const QString& name, ReduceMotion reduceMotion, QWidget* parent);

    [[nodiscard]] QSize contentSize() const override;

    /// Where the knob is, from 0 (off) to 1 (on).
    [[nodiscard]] qreal position() const { return position_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void moveKnob(bool on);
    void paintContent(QPainter& painter) const;

    ReduceMotion reduceMotion_;
    QVariantAnimation animation_{this};
    qreal position_ = 0;
};

/// Selects one item of a list, 132 x 28 pixels or as wide as its longest item. With the index -1 it shows no
/// selection. `activated` is emitted for the user's choices only.
class Picker : public QComboBox {
    Q_OBJECT

  public:
    Picker(const QString& name, const QStringList& choices, QWidget* parent);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
};

/// A raised area with continuous corners and a thin border.
class Card : public QWidget {
    Q_OBJECT

  public:
    explicit Card(QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// A card with one row for each control: a label, free space, the control.
class FormGroup : public Card {
    Q_OBJECT

  public:
    explicit FormGroup(QWidget* parent);

    /// Adds `control` in a new row at the bottom and takes ownership of it.
    void addRow(const QString& label, QWidget* control);

    /// Shows `note` beside `control`, the control of one of the rows; an empty note is hidden.
    void setNote(QWidget* control, const QString& note);

    [[nodiscard]] QSize sizeHint() const override;

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void layOut();

    struct Row {
        Paragraph* label;
        QWidget* control;
        QWidget* divider;
        LineLabel* note;
    };
    std::vector<Row> rows_;
};

} // namespace corvane
