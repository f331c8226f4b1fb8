#include "Platform/MacOS/Applications.h"

#include "Platform/MacOS/BringForward.h"

#include <QString>

#import <AppKit/AppKit.h>
#include <memory>

namespace corvane {

namespace {

class RunningApplication : public OtherApplication {
  public:
    explicit RunningApplication(NSRunningApplication* application)
        : application_(application) {}

    [[nodiscard]] bool isActive() const override { return application_.active; }

    void yield() override {
        if (@available(macOS 14.0, *)) [NSApp yieldActivationToApplication:application_];
    }

    [[nodiscard]] bool request() override { return [application_ activateWithOptions:0]; }

    void requestFromFront() override {
        if (@available(macOS 14.0, *)) {
            NSRunningApplication* const front = NSWorkspace.sharedWorkspace.frontmostApplication;
            if (front) [application_ activateFromApplication:front options:0];
        }
    }

  private:
    NSRunningApplication* application_;
};

} // namespace

void MacApplications::activate(const Terminal& terminal, Report report) {
    NSString* const identifier = QString::fromStdString(terminal.bundleID.value_or("")).toNSString();
    NSRunningApplication* const application =
        [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier].firstObject;
    if (application) {
        bringForward(std::make_shared<RunningApplication>(application),
                     NSApp.active ? OurState::active : OurState::inactive, scheduler_);
    }
    report(application != nil);
}

} // namespace corvane
