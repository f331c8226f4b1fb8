#pragma once

#include "Controls/Links.h"

#include <QWidget>

namespace corvane {

class Divider;
class LinkButton;
class Paragraph;

/// The application's name and version, and links to its maker.
class AboutTab : public QWidget {
    Q_OBJECT

  public:
    AboutTab(const links::Opener& openLink, QWidget* parent);

  protected:
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    void layOut();

    Paragraph* name_;
    Paragraph* description_;
    LinkButton* website_;
    Paragraph* dot_;
    LinkButton* contact_;
    Divider* divider_;
    Paragraph* heading_;
    Paragraph* apps_;
    LinkButton* more_;
};

} // namespace corvane
