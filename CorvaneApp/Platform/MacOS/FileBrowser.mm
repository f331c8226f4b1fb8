#include "Platform/MacOS/FileBrowser.h"

#include <QString>

#import <AppKit/AppKit.h>
#include <system_error>

namespace corvane {

namespace {

NSURL* url(const std::filesystem::path& path) {
    return [NSURL fileURLWithPath:QString::fromStdString(path.string()).toNSString()];
}

} // namespace

void MacFileBrowser::reveal(const std::filesystem::path& file) {
    std::error_code ignored;
    if (std::filesystem::exists(file, ignored)) {
        [NSWorkspace.sharedWorkspace activateFileViewerSelectingURLs:@[ url(file) ]];
    } else {
        [NSWorkspace.sharedWorkspace openURL:url(file.parent_path())];
    }
}

} // namespace corvane
