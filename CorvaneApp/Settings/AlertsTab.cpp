#include "Settings/AlertsTab.h"

#include "Controls/ErrorText.h"
#include "Model/AppModel.h"
#include "Style/TextScale.h"
#include "Style/Times.h"
#include "Style/Utf8.h"

#include <QEvent>
#include <QScopedValueRollback>

#include <algorithm>
#include <optional>
#include <string>

namespace corvane {

namespace {

constexpr Scaled padding{24};
constexpr Scaled groupSpacing{16};
constexpr Scaled errorGap{6};
// Leaves room for two lines of an error.
constexpr Scaled bottomGap{4};

QStringList soundNames() {
    QStringList names;
    for (const std::string_view name : AlertPreferences::soundChoices)
        names.append(fromUtf8(name));
    return names;
}

template <typename List, typename Value>
int indexOf(const List& list, const Value& value) {
    const auto found = std::find(list.begin(), list.end(), value);
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

} // namespace

AlertsTab::AlertsTab(AppModel& model, const ReduceMotion& reduceMotion, QWidget* parent)
    : QWidget(parent)
    , model_(model)
    , toggles_(new FormGroup(this))
    , pickers_(new FormGroup(this)) {
    const auto addSwitch = [&](const QString& label, auto change) {
        auto* const control = new Switch(label, reduceMotion, toggles_);
        toggles_->addRow(label, control);
        connect(control, &QAbstractButton::toggled, this, [this, change](bool on) {
            if (!isRefreshing_) change(on);
        });
        return control;
    };
    const auto changePrefs = [this](auto change) {
        return [this, change](auto value) {
            AlertPreferences prefs = model_.prefs();
            change(prefs, value);
            if (prefs != model_.prefs()) model_.setPrefs(prefs);
        };
    };
    alertWhenDone_ =
        addSwitch(tr("Alert when an agent finishes"),
                  changePrefs([](AlertPreferences& prefs, bool on) { prefs.alertWhenDone = on; }));
    opensAtLogin_ = addSwitch(tr("Open Corvane at login"), [this](bool on) {
        model_.setOpensAtLogin(on);
        refreshLoginItem();
    });
    soundsOn_ = addSwitch(tr("Play sounds"),
                          changePrefs([](AlertPreferences& prefs, bool on) { prefs.soundsOn = on; }));

    const auto addPicker = [&](const QString& label, const QStringList& choices, auto change) {
        auto* const control = new Picker(label, choices, pickers_);
        pickers_->addRow(label, control);
        connect(control, &QComboBox::activated, this, [change](int index) {
            if (index >= 0) change(static_cast<std::size_t>(index));
        });
        return control;
    };
    const auto addSoundPicker = [&](const QString& label, auto change) {
        return addPicker(label, soundNames(), [this, change](std::size_t index) {
            const std::string sound(AlertPreferences::soundChoices.at(index));
            change(sound);
            model_.playSample(sound);
        });
    };
    waitingSound_ = addSoundPicker(
        tr("Waiting sound"),
        changePrefs([](AlertPreferences& prefs, const std::string& sound) { prefs.waitingSound = sound; }));
    doneSound_ = addSoundPicker(
        tr("Finished sound"),
        changePrefs([](AlertPreferences& prefs, const std::string& sound) { prefs.doneSound = sound; }));
    QStringList reminders;
    for (const std::int64_t minutes : AlertPreferences::reminderChoices)
        reminders.append(minutes == 0 ? tr("Off") : tr("Every %1 min").arg(minutes));
    reminder_ =
        addPicker(tr("Remind me again"), reminders, changePrefs([](AlertPreferences& prefs, std::size_t i) {
                      prefs.reminderMinutes = AlertPreferences::reminderChoices.at(i);
                  }));
    start_ = new BorderedButton(tr("Start"), pickers_);
    pickers_->addRow(tr("Quiet for 1 hour"), start_);
    connect(start_, &QAbstractButton::clicked, this, [this] { model_.quietForAnHour(); });

    error_ = new ErrorText(this);
    connect(&model, &AppModel::changed, this, &AlertsTab::refresh);
    refresh();
}

void AlertsTab::refresh() {
    const QScopedValueRollback guard(isRefreshing_, true);
    const AlertPreferences& prefs = model_.prefs();
    alertWhenDone_->setChecked(prefs.alertWhenDone);
    soundsOn_->setChecked(prefs.soundsOn);
    waitingSound_->setCurrentIndex(indexOf(AlertPreferences::soundChoices, prefs.waitingSound));
    doneSound_->setCurrentIndex(indexOf(AlertPreferences::soundChoices, prefs.doneSound));
    for (Picker* const picker : {waitingSound_, doneSound_})
        picker->setEnabled(prefs.soundsOn);
    reminder_->setCurrentIndex(indexOf(AlertPreferences::reminderChoices, prefs.reminderMinutes));

    const std::optional<Date> quietUntil = model_.quietUntil();
    pickers_->setNote(start_, quietUntil ? times::quietUntil(*quietUntil) : QString());

    const QString message = QString::fromStdString(model_.connectError().value_or(std::string()));
    if (message == error_->message()) return;
    error_->setMessage(message);
    layOut();
}

void AlertsTab::refreshLoginItem() {
    const QScopedValueRollback guard(isRefreshing_, true);
    opensAtLogin_->setChecked(model_.opensAtLogin());
}

void AlertsTab::layOut() {
    const int inner = width() - 2 * padding;
    int top = padding;
    for (FormGroup* const group : {toggles_, pickers_}) {
        group->setGeometry(padding, top, inner, group->sizeHint().height());
        top += group->height() + groupSpacing;
    }
    top += errorGap - groupSpacing;
    const int room = height() - bottomGap - top;
    error_->setGeometry(padding, top, inner, std::max(0, std::min(error_->heightForWidth(inner), room)));
}

void AlertsTab::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    refreshLoginItem();
}

void AlertsTab::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    layOut();
}

void AlertsTab::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // The user may have changed the login item while another window was active.
    if (event->type() == QEvent::ActivationChange && isVisible() && isActiveWindow()) refreshLoginItem();
}

} // namespace corvane
