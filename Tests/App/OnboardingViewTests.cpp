#include "App/Support/Pictures.h"
#include "App/Support/Waiting.h"
#include "App/Support/WindowStates.h"
#include "Controls/ErrorText.h"
#include "Controls/Paragraph.h"
#include "MainWindow.h"
#include "Settings/AgentCard.h"

#include <QAccessible>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace corvane {
namespace {

std::string textOf(QAccessible::Text kind, QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->text(kind).toStdString();
}

QAccessible::Role roleOf(QWidget* widget) {
    return QAccessible::queryAccessibleInterface(widget)->role();
}

class OnboardingViewTest : public testing::Test {
  protected:
    static std::vector<std::string> texts(const QWidget& widget) {
        std::vector<std::string> result;
        for (const auto* const paragraph : widget.findChildren<Paragraph*>()) {
            if (!paragraph->isHidden()) result.push_back(paragraph->text().toStdString());
        }
        return result;
    }

    static std::vector<std::string> buttons(const QWidget& widget) {
        std::vector<std::string> result;
        for (const auto* const button : widget.findChildren<QAbstractButton*>()) {
            if (!button->isHidden()) result.push_back(button->text().toStdString());
        }
        return result;
    }

    static QAbstractButton* button(const QWidget& widget, const char* text) {
        for (auto* const candidate : widget.findChildren<QAbstractButton*>()) {
            if (candidate->text() == QLatin1String(text)) return candidate;
        }
        ADD_FAILURE() << "no button " << text;
        return nullptr;
    }

    static AgentCard* card(const QWidget& widget, AgentKind agent) {
        for (auto* const candidate : widget.findChildren<AgentCard*>()) {
            if (candidate->agent() == agent) return candidate;
        }
        return nullptr;
    }

    [[nodiscard]] std::unique_ptr<MainWindow> mainWindow() {
        return std::make_unique<MainWindow>(
            fixture_.model(), fixture_.platform.activation, fixture_.openLink(),
            CommandHandlers{[this] { calls_ += "main "; }, [this] { calls_ += "settings "; },
                            [this](QRect /*menu*/) { calls_ += "panel "; }, [this] { calls_ += "quit "; }});
    }

    static void show(QWidget& window) {
        window.show();
        window.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&window, test::longestWait));
    }

    test::ModelFixture fixture_;
    std::string calls_;
};

TEST_F(OnboardingViewTest, aFreshHomeOffersToConnectBothAgents) {
    const auto view = fixture_.onboarding();
    EXPECT_EQ(view->size(), QSize(560, 460));
    EXPECT_EQ(texts(*view),
              (std::vector<std::string>{
                  "Corvane taps you when your agent needs you.",
                  "When Claude Code is waiting for your approval or your reply — or finishes — you hear a "
                  "sound and see a banner, even in a full-screen app. Lives in your menu bar.",
                  "Claude Code",
                  "Adds a small hook to ~/.claude/settings.json. A backup is saved first; Remove puts it "
                  "back.",
                  "Codex",
                  "Adds one notify line to ~/.codex/config.toml. Codex only reports when it finishes, not "
                  "approvals."}));
    EXPECT_EQ(buttons(*view), (std::vector<std::string>{"Connect", "Connect", "Try a test alert",
                                                        "Need a custom feature? Contact us", "Done"}));
    EXPECT_TRUE(view->findChild<ErrorText*>()->isHidden());
}

TEST_F(OnboardingViewTest, connectingAndRemovingChangesTheCard) {
    const auto view = fixture_.onboarding();
    AgentCard* const claude = card(*view, AgentKind::claude);
    button(*claude, "Connect")->click();
    EXPECT_TRUE(fixture_.model().connected().at(AgentKind::claude));
    EXPECT_EQ(texts(*claude), (std::vector<std::string>{
                                  "Claude Code",
                                  "Alerts when Claude waits for approval, waits for your reply, or finishes. "
                                  "~/.claude/settings.json",
                                  "Sessions that are already running report from now on.", "Connected"}));
    EXPECT_EQ(buttons(*claude), std::vector<std::string>{"Remove"});

    AgentCard* const codex = card(*view, AgentKind::codex);
    EXPECT_EQ(buttons(*codex), std::vector<std::string>{"Connect"});
    button(*codex, "Connect")->click();
    EXPECT_EQ(texts(*codex),
              (std::vector<std::string>{"Codex", "Alerts when Codex finishes a turn. ~/.codex/config.toml",
                                        "Conversations that are already open don't report; new ones do.",
                                        "Connected"}));

    button(*claude, "Remove")->click();
    EXPECT_FALSE(fixture_.model().connected().at(AgentKind::claude));
    EXPECT_EQ(buttons(*claude), std::vector<std::string>{"Connect"});
}

TEST_F(OnboardingViewTest, theLineAboutRunningAgentsStaysUntilTheCardIsHidden) {
    fixture_.model().connectAgent(AgentKind::codex);
    const auto view = fixture_.onboarding();
    AgentCard* const codex = card(*view, AgentKind::codex);
    const std::vector<std::string> connectedBefore{
        "Codex", "Alerts when Codex finishes a turn. ~/.codex/config.toml", "Connected"};
    EXPECT_EQ(texts(*codex), connectedBefore);
    view->show();
    const int width = 200; // more lines than the least height has room for
    const int height = codex->heightForWidth(width);

    button(*codex, "Remove")->click();
    EXPECT_EQ(texts(*codex).size(), 2U);
    button(*codex, "Connect")->click();
    EXPECT_EQ(texts(*codex).size(), connectedBefore.size() + 1);
    EXPECT_GT(codex->heightForWidth(width), height);
    view->hide();
    view->show();
    EXPECT_EQ(texts(*codex), connectedBefore);
    EXPECT_EQ(codex->heightForWidth(width), height);
}

TEST_F(OnboardingViewTest, aHomeThatOccursTwiceInThePathIsShortenedTwice) {
    // A home such as "/h" occurs again in "/h/x/h/.claude".
    const test::ScratchFolder outer("a");
    const std::string home = outer.path().string();
    AppModel model(AgentConnector(home), fixture_.defaults, fixture_.banners, fixture_.platform.services());
    const AgentCard card(AgentKind::claude, model, nullptr);
    EXPECT_EQ(texts(card).at(1), "Adds a small hook to ~/.claude/settings.json. A backup is saved first; "
                                 "Remove puts it back.");

    // With "/." as the home, every "/." in the path is shortened.
    AppModel dotted(AgentConnector("/."), fixture_.defaults, fixture_.banners, fixture_.platform.services());
    const AgentCard dottedCard(AgentKind::claude, dotted, nullptr);
    EXPECT_EQ(texts(dottedCard).at(1),
              "Adds a small hook to ~~claude/settings.json. A backup is saved first; Remove puts it back.");
}

TEST_F(OnboardingViewTest, aFailedCodexConnectShowsTheMessageAndStaysUnconnected) {
    const auto view = fixture_.onboarding();
    test::writeFile(fixture_.home / ".codex/config.toml", "notify = [\"/usr/local/bin/ping-me\"]\n");
    AgentCard* const codex = card(*view, AgentKind::codex);
    button(*codex, "Connect")->click();

    auto* const error = view->findChild<ErrorText*>();
    EXPECT_FALSE(error->isHidden());
    EXPECT_EQ(error->toPlainText().toStdString(), *fixture_.model().connectError());
    EXPECT_NE(error->toPlainText().indexOf(QStringLiteral("/usr/local/bin/ping-me")), -1);
    EXPECT_EQ(buttons(*codex), std::vector<std::string>{"Connect"});

    // A success removes the message.
    button(*card(*view, AgentKind::claude), "Connect")->click();
    EXPECT_TRUE(error->isHidden());
}

TEST_F(OnboardingViewTest, theErrorCanBeSelectedAndCopiedAndBreaksInsideLongPaths) {
    const auto view = fixture_.onboarding();
    auto* const error = view->findChild<ErrorText*>();
    const QString message = QString(300, QLatin1Char('x'));
    error->setMessage(message);
    EXPECT_GT(error->heightForWidth(512), 2 * 16);
    EXPECT_TRUE(error->isReadOnly());
    error->selectAll();
    EXPECT_EQ(error->textCursor().selectedText(), message);
    const auto flags = error->textInteractionFlags();
    EXPECT_TRUE(flags.testFlag(Qt::TextSelectableByMouse));
    EXPECT_TRUE(flags.testFlag(Qt::TextSelectableByKeyboard));
    EXPECT_EQ(textOf(QAccessible::Name, error), message.toStdString());
}

TEST_F(OnboardingViewTest, aVeryLongErrorLeavesTheBottomRowFree) {
    const auto view = fixture_.onboarding();
    test::writeFile(fixture_.home / ".codex/config.toml", "notify = [\"" + std::string(4000, 'x') + "\"]\n");
    button(*card(*view, AgentKind::codex), "Connect")->click();
    const auto* const error = view->findChild<ErrorText*>();
    EXPECT_FALSE(error->isHidden());
    EXPECT_LE(error->geometry().bottom() + 12, button(*view, "Done")->geometry().top());
}

TEST_F(OnboardingViewTest, theBottomRowCallsTheModelAndTheMaker) {
    const auto view = fixture_.onboarding();
    button(*view, "Try a test alert")->click();
    EXPECT_EQ(fixture_.platform.panels.visible().size(), 1U);
    EXPECT_EQ(fixture_.platform.sounds.played, std::vector<std::string>{"Glass"});

    button(*view, "Need a custom feature? Contact us")->click();
    EXPECT_EQ(fixture_.opened, std::vector<std::string>{"https://corvane.app/contact?source=onboarding"});

    const QSignalSpy done(view.get(), &OnboardingView::done);
    button(*view, "Done")->click();
    EXPECT_TRUE(fixture_.model().hasCompletedOnboarding());
    EXPECT_EQ(done.count(), 1);
}

TEST_F(OnboardingViewTest, partsAreAtTheirDesignedPlaces) {
    fixture_.connectClaude();
    const auto view = fixture_.onboarding();
    const auto paragraphs = view->findChildren<Paragraph*>(QString(), Qt::FindDirectChildrenOnly);
    EXPECT_EQ(paragraphs.at(0)->geometry(), QRect(24, 24, 512, 27));
    EXPECT_EQ(paragraphs.at(1)->geometry(), QRect(24, 59, 512, 40));
    EXPECT_EQ(card(*view, AgentKind::claude)->geometry(), QRect(24, 119, 512, 76));
    EXPECT_EQ(card(*view, AgentKind::codex)->geometry(), QRect(24, 207, 512, 76));
    EXPECT_EQ(button(*view, "Try a test alert")->geometry().topLeft(), QPoint(24, 408));
    EXPECT_EQ(button(*view, "Done")->geometry().bottomRight(), QPoint(535, 435));
    EXPECT_EQ(button(*view, "Done")->height(), 28);

    const AgentCard* const claude = card(*view, AgentKind::claude);
    const auto texts = claude->findChildren<Paragraph*>();
    EXPECT_EQ(texts.at(0)->pos(), QPoint(60, 12));
    EXPECT_EQ(texts.at(0)->height(), 18);
    EXPECT_EQ(texts.at(1)->pos(), QPoint(60, 32));
    EXPECT_EQ(texts.at(1)->height(), 32);
    const QRect remove = button(*claude, "Remove")->geometry();
    EXPECT_EQ(remove.right(), 499);
    EXPECT_EQ(remove.top(), 24);
    EXPECT_EQ(texts.back()->geometry().right() + 1 + 12, remove.left());
    EXPECT_EQ(texts.at(1)->geometry().right() + 1 + 12 + 18 + 6, texts.back()->geometry().left());
}

TEST_F(OnboardingViewTest, rightToLeftMirrorsEveryPart) {
    const auto view = fixture_.onboarding();
    std::vector<QRect> before;
    const auto parts = view->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    for (const QWidget* const part : parts)
        before.push_back(part->geometry());
    view->setLayoutDirection(Qt::RightToLeft);
    for (std::size_t i = 0; i < before.size(); ++i) {
        const QRect now = parts.at(static_cast<qsizetype>(i))->geometry();
        EXPECT_EQ(now.left(), 560 - before[i].right() - 1);
        EXPECT_EQ(now.size(), before[i].size());
    }
}

TEST_F(OnboardingViewTest, theDesktopsAppearanceIsFollowedLive) {
    const auto view = fixture_.onboarding();
    EXPECT_EQ(test::pictureOf(*view, ColorScheme::light, 1).pixelColor(2, 2),
              Tokens::background.color(ColorScheme::light));
    EXPECT_EQ(test::pictureOf(*view, ColorScheme::dark, 1).pixelColor(2, 2),
              Tokens::background.color(ColorScheme::dark));
    const auto* const error = view->findChild<ErrorText*>();
    fixture_.failToConnectCodex();
    for (const ColorScheme scheme : {ColorScheme::light, ColorScheme::dark}) {
        (void)test::pictureOf(*view, scheme, 1);
        QTextCursor cursor(error->document());
        cursor.movePosition(QTextCursor::NextCharacter);
        EXPECT_EQ(cursor.charFormat().foreground().color(), Tokens::error.color(scheme));
    }
}

TEST_F(OnboardingViewTest, everyControlHasItsNameAndRole) {
    fixture_.connectClaude();
    const auto view = fixture_.onboarding();
    for (const char* const name : {"Try a test alert", "Need a custom feature? Contact us", "Done"}) {
        QAbstractButton* const control = button(*view, name);
        EXPECT_EQ(textOf(QAccessible::Name, control), name);
        EXPECT_EQ(roleOf(control), QAccessible::Button) << name;
    }
    QAbstractButton* const remove = button(*card(*view, AgentKind::claude), "Remove");
    EXPECT_EQ(textOf(QAccessible::Name, remove), "Remove");
    EXPECT_EQ(textOf(QAccessible::Description, remove), "Claude Code");
    auto* const title = view->findChild<Paragraph*>();
    EXPECT_EQ(textOf(QAccessible::Name, title), "Corvane taps you when your agent needs you.");
    EXPECT_EQ(roleOf(title), QAccessible::StaticText);
}

// MainWindow

TEST_F(OnboardingViewTest, theMainWindowIsFixedToItsContent) {
    const auto window = mainWindow();
    EXPECT_EQ(window->objectName().toStdString(), "main");
    EXPECT_EQ(window->windowTitle().toStdString(), "Corvane");
    show(*window);
    EXPECT_EQ(window->view().size(), QSize(560, 460));
    EXPECT_EQ(window->minimumSize(), window->maximumSize());
    EXPECT_EQ(window->width(), 560);
}

TEST_F(OnboardingViewTest, theMenusHoldTheCommandsAndNoNewWindow) {
    const auto window = mainWindow();
    std::vector<std::string> items;
    for (const QAction* const menu : window->menuBar()->actions()) {
        items.push_back(menu->text().toStdString());
        for (const QAction* const action : menu->menu()->actions()) {
            items.push_back(action->isSeparator()
                                ? "-"
                                : action->text().toStdString() + " " +
                                      action->shortcut().toString(QKeySequence::PortableText).toStdString());
        }
    }
    EXPECT_EQ(items, (std::vector<std::string>{"&File", "Sessions ", "Settings… Ctrl+,", "-", "Close Ctrl+W",
                                               "Quit Ctrl+Q", "&Window", "Corvane Ctrl+0", "-"}));
}

TEST_F(OnboardingViewTest, shortcutsReachTheirCommands) {
    const auto window = mainWindow();
    show(*window);
    QTest::keyClick(window.get(), Qt::Key_0, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Comma, Qt::ControlModifier);
    QTest::keyClick(window.get(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_EQ(calls_, "main settings quit ");
    QTest::keyClick(window.get(), Qt::Key_W, Qt::ControlModifier);
    EXPECT_FALSE(window->isVisible());
    EXPECT_FALSE(fixture_.model().hasCompletedOnboarding());
}

TEST_F(OnboardingViewTest, doneClosesTheWindowForGood) {
    const auto window = mainWindow();
    show(*window);
    QTest::mouseClick(button(*window, "Done"), Qt::LeftButton);
    EXPECT_FALSE(window->isVisible());
    EXPECT_TRUE(fixture_.model().hasCompletedOnboarding());
    // The user can open it again.
    window->present();
    EXPECT_TRUE(window->isVisible());
}

TEST_F(OnboardingViewTest, showingTheWindowRefreshesTheConnections) {
    const auto window = mainWindow();
    show(*window);
    fixture_.connectClaude();
    EXPECT_EQ(buttons(*card(*window, AgentKind::claude)), std::vector<std::string>{"Remove"});
    window->close();
    // The agent has rewritten its file.
    test::writeFile(fixture_.home / ".claude/settings.json", "{}\n");
    window->present();
    EXPECT_EQ(buttons(*card(*window, AgentKind::claude)), std::vector<std::string>{"Connect"});
}

TEST_F(OnboardingViewTest, firstRunCanBeUsedByKeyboardAlone) {
    const auto window = mainWindow();
    show(*window);
    const auto focused = [&] {
        const auto* const control = qobject_cast<QAbstractButton*>(window->focusWidget());
        return control == nullptr ? std::string() : control->text().toStdString();
    };
    EXPECT_EQ(focused(), "");
    std::vector<std::string> order;
    for (int i = 0; i < 5; ++i) {
        QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
        order.push_back(focused());
    }
    EXPECT_EQ(order, (std::vector<std::string>{"Connect", "Connect", "Try a test alert",
                                               "Need a custom feature? Contact us", "Done"}));
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(window->focusWidget(), Qt::Key_Backtab);

    QTest::keyClick(window->focusWidget(), Qt::Key_Space);
    EXPECT_TRUE(fixture_.model().connected().at(AgentKind::claude));
    // The focus stays on the card.
    EXPECT_EQ(focused(), "Remove");
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_EQ(fixture_.platform.panels.visible().size(), 1U);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window->focusWidget(), Qt::Key_Tab);
    QTest::keyClick(window->focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(fixture_.model().hasCompletedOnboarding());
    EXPECT_FALSE(window->isVisible());
}

} // namespace
} // namespace corvane
