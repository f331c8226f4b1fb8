#include "Settings/AgentsTab.h"

#include "Controls/Buttons.h"
#include "Controls/ErrorText.h"
#include "Controls/Mirrored.h"
#include "Model/AppModel.h"
#include "Platform/FileBrowser.h"
#include "Settings/AgentCard.h"
#include "Style/TextScale.h"

#include <QEvent>
#include <QStyle>

#include <algorithm>

namespace corvane {

namespace {

constexpr Scaled padding{24};
constexpr Scaled spacing{12};
constexpr Scaled testGap{24};
constexpr Scaled linkSize{13.0};

} // namespace

AgentsTab::AgentsTab(AppModel& model, FileBrowser& fileBrowser, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , cards_(AgentCard::forAll(model, this))
    , backup_(new LinkButton(tr("Show backup in Finder"), linkSize, this))
    , error_(new ErrorText(this))
    , test_(new BorderedButton(tr("Try a test alert"), this)) {
    for (AgentCard* const card : cards_)
        connect(card, &AgentCard::heightChanged, this, &AgentsTab::layOut);
    connect(backup_, &QAbstractButton::clicked, this, [this, &fileBrowser] {
        if (const auto backup = model_.backupInUse()) fileBrowser.reveal(*backup);
    });
    connect(test_, &QAbstractButton::clicked, this, [this] { model_.sendTestAlert(); });
    connect(&model, &AppModel::changed, this, &AgentsTab::refresh);
    refresh();
}

void AgentsTab::refresh() {
    const bool hasBackup = model_.backupInUse().has_value();
    const QString message = QString::fromStdString(model_.connectError().value_or(std::string()));
    if (hasBackup != backup_->isHidden() && message == error_->message()) return;
    backup_->setVisible(hasBackup);
    error_->setMessage(message);
    layOut();
}

void AgentsTab::layOut() {
    const int inner = width() - 2 * padding;
    int top = padding;
    for (AgentCard* const card : cards_) {
        const int height = card->heightForWidth(inner);
        card->setGeometry(padding, top, inner, height);
        top += height + spacing;
    }
    if (!backup_->isHidden()) {
        const QSize link = backup_->contentSize();
        backup_->setContentRect(mirrored(*this, padding, top, link));
        top += link.height() + spacing;
    }
    const QSize test = test_->sizeHint();
    if (!error_->isHidden()) {
        const int room = height() - padding - test.height() - testGap - top;
        const int error = std::max(0, std::min(error_->heightForWidth(inner), room));
        error_->setGeometry(padding, top, inner, error);
        top += error + spacing;
    }
    test_->setGeometry(mirrored(*this, padding, top - spacing + testGap, test));
}

void AgentsTab::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void AgentsTab::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::LayoutDirectionChange) layOut();
}

} // namespace corvane
