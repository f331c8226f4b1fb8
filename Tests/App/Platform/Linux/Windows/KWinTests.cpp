// The requests to KWin, which the test fakes on its own session bus.

#include "App/Platform/Linux/PrivateBus.h"
#include "App/Platform/Linux/Windows/FakeKWin.h"
#include "Platform/Linux/KWinWindows.h"

#include <QFile>
#include <QRegularExpression>
#include <QtTest/QTest>
#include <gtest/gtest.h>

#include <chrono>
#include <memory>
#include <optional>

namespace corvane {
namespace {

using namespace std::chrono_literals;
using test::FakeKWin;

constexpr const char* windows = R"([{"pid":100,"id":0,"name":"konsole","title":"blog"},
                                    {"pid":102,"id":7,"name":"xterm","title":"\"); quit(\""},
                                    {"pid":102,"id":0,"name":"konsole","title":"~ : claude"}])";

class KWinRaiser : public testing::TestWithParam<FakeKWin::Version> {
  protected:
    static void SetUpTestSuite() { bus_ = std::make_unique<test::PrivateBus>(); }
    static void TearDownTestSuite() {
        QDBusConnection::disconnectFromBus(QDBusConnection::sessionBus().name());
        bus_.reset();
    }

    void SetUp() override { kwin_ = std::make_unique<FakeKWin>(bus_->address(), GetParam()); }

    /// What raising the window of these processes reports.
    bool raise(std::vector<pid_t> processes, std::chrono::milliseconds limit = 10000ms) {
        WindowSearch search;
        search.processes = std::move(processes);
        search.directory = QStringLiteral("/w/$(evil)\"'`\n//shop");
        search.agent = QStringLiteral("claude");
        std::optional<bool> result;
        KWinWindowRaiser(limit).raise(search, context_, [&result](bool isFound) { result = isFound; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return result.has_value(); }, 20000));
        return result.value_or(false);
    }

    /// Whether nothing of the script is left, neither in KWin nor on the disk nor here.
    void expectNothingLeft() {
        EXPECT_TRUE(!kwin_ || QTest::qWaitFor([this] { return kwin_->loaded.isEmpty(); }, 10000));
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_TRUE(context_.children().empty());
        EXPECT_TRUE(!kwin_ || kwin_->file.isEmpty() || !QFile::exists(kwin_->file));
    }

    static std::unique_ptr<test::PrivateBus> bus_;
    std::unique_ptr<FakeKWin> kwin_;
    QObject context_;
};

std::unique_ptr<test::PrivateBus> KWinRaiser::bus_;

TEST_P(KWinRaiser, theNearestAncestorsWindowIsActivatedByItsId) {
    kwin_->script.description = QString::fromUtf8(windows);
    EXPECT_TRUE(raise({900, 102, 100}));
    EXPECT_EQ(kwin_->script.chosen, 2) << "its title names the agent";
    expectNothingLeft();
    EXPECT_TRUE(raise({900, 100}));
    EXPECT_EQ(kwin_->script.chosen, 0);
    expectNothingLeft();
    EXPECT_EQ(kwin_->scriptCount, 2);
}

TEST_P(KWinRaiser, theScriptContainsNothingForeign) {
    kwin_->script.description = QString::fromUtf8(windows);
    EXPECT_TRUE(raise({102}));
    EXPECT_FALSE(kwin_->script.text.contains(QStringLiteral("evil"))) << kwin_->script.text.toStdString();
    EXPECT_FALSE(kwin_->script.text.contains(QStringLiteral("claude")));
    // The object's name is a random number, which may contain this one.
    QString text = kwin_->script.text;
    const QRegularExpression reply(QStringLiteral(R"("/org/corvane/Corvane/[0-9]+")"));
    EXPECT_TRUE(text.contains(reply)) << text.toStdString();
    EXPECT_FALSE(text.remove(reply).contains(QStringLiteral("102"))) << text.toStdString();
}

TEST_P(KWinRaiser, withoutAWindowNothingIsActivated) {
    for (const char* const description : {windows, "[]", "no JSON", R"([1,null,"x"])"}) {
        kwin_->script.chosen = -2;
        kwin_->script.description = QString::fromUtf8(description);
        EXPECT_FALSE(raise({900})) << description;
        // The request to unload the script follows the reply to it, and may still be on its way.
        expectNothingLeft();
        EXPECT_EQ(kwin_->script.chosen, -1) << description;
    }
}

TEST_P(KWinRaiser, aScriptThatIsNotLoadedFindsNothing) {
    kwin_->isRefusing = true;
    EXPECT_FALSE(raise({102}));
    expectNothingLeft();
}

TEST_P(KWinRaiser, aHangingKWinTimesOut) {
    kwin_->script.isStuck = true;
    EXPECT_FALSE(raise({102}, 50ms));
    expectNothingLeft();
    kwin_->isHanging = true;
    EXPECT_FALSE(raise({102}, 50ms));
    expectNothingLeft();
}

TEST_P(KWinRaiser, aScriptWhoseContextEndsIsUnloadedWithoutAReport) {
    kwin_->script.isStuck = true;
    auto context = std::make_unique<QObject>();
    bool isReported = false;
    KWinWindowRaiser(10000ms).raise({}, *context, [&isReported](bool /*isFound*/) { isReported = true; });
    ASSERT_TRUE(QTest::qWaitFor([this] { return !kwin_->loaded.isEmpty(); }, 10000));
    context.reset();
    expectNothingLeft();
    EXPECT_FALSE(isReported);
}

TEST_P(KWinRaiser, withoutKWinNothingIsFoundAtOnce) {
    kwin_.reset();
    EXPECT_FALSE(raise({102}));
    expectNothingLeft();
}

INSTANTIATE_TEST_SUITE_P(Versions, KWinRaiser,
                         testing::Values(FakeKWin::Version::five, FakeKWin::Version::six),
                         [](const auto& version) {
                             return version.param == FakeKWin::Version::five ? "five" : "six";
                         });

} // namespace
} // namespace corvane
