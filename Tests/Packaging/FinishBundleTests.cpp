#include "Packaging/Script.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace corvane {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

/// A bundle of fake binaries, which the stubs of Apple's tools read and change.
class FinishBundleTest : public testing::Test {
  protected:
    FinishBundleTest() {
        test::writeFile(contents_ / "Info.plist",
                        "<plist version=\"1.0\">\n<dict>\n    <key>CFBundleExecutable</key>\n"
                        "    <string>Corvane</string>\n    <key>LSMinimumSystemVersion</key>\n"
                        "    <string>13.0</string>\n</dict>\n</plist>\n");
        test::writeFile(contents_ / "Resources/Corvane.icns", "icns");
        binary("MacOS/Corvane",
               "dep /usr/lib/libSystem.B.dylib\ndep @rpath/QtCore.framework/Versions/A/QtCore\n"
               "rpath @executable_path/../Frameworks\nminos 13.0\n");
        binary("Frameworks/QtCore.framework/Versions/A/QtCore",
               "id @executable_path/../Frameworks/QtCore.framework/Versions/A/QtCore\n"
               "dep /System/Library/Frameworks/AppKit.framework/Versions/C/AppKit\nminos 13.0\n");
        binary("PlugIns/platforms/libqcocoa.dylib",
               "id @rpath/libqcocoa.dylib\ndep @rpath/QtCore.framework/Versions/A/QtCore\nminos 13.0\n");
    }

    static void write(const fs::path& file, const std::string& commands) {
        test::writeFile(file, "\xCF\xFA\xED\xFE\n" + commands);
    }
    void binary(const std::string& path, const std::string& commands) { write(contents_ / path, commands); }

    test::Outcome finish(const std::string& failing = {}) {
        std::map<std::string, std::string> environment{{"PATH", CORVANE_STUBS ":/usr/bin:/bin"},
                                                       {"TMPDIR", scratch_.path().string()},
                                                       {"CORVANE_TEST_LOG", log_.string()}};
        if (!failing.empty()) environment["CORVANE_TEST_FAIL"] = failing;
        return test::runScript(CORVANE_SOURCES "/Packaging/macos/finish-bundle",
                               {bundle_.string(), libraries_.string()}, environment);
    }

    /// The recorded calls, without the bundle's path.
    std::vector<std::string> calls(const std::string& beginning) {
        std::vector<std::string> result;
        for (std::string line : test::linesOf(test::fileBytes(log_).value_or(""))) {
            if (!line.starts_with(beginning)) continue;
            const std::size_t place = line.find(bundle_.string());
            if (place != std::string::npos) line.replace(place, bundle_.string().size(), "*");
            result.push_back(line);
        }
        return result;
    }
    [[nodiscard]] std::string content(const std::string& path) const {
        return test::fileBytes(contents_ / path).value_or("missing");
    }

    test::ScratchFolder scratch_{"a bundle"};
    fs::path bundle_ = scratch_ / "Corvane.app";
    fs::path contents_ = bundle_ / "Contents";
    fs::path libraries_ = scratch_ / "brew";
    fs::path log_ = scratch_ / "log";
};

TEST_F(FinishBundleTest, aCompleteBundleIsOnlySignedFromTheInsideOut) {
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(calls("install_name_tool"), IsEmpty());
    EXPECT_THAT(calls("plutil"), IsEmpty());
    EXPECT_THAT(calls("codesign"),
                ElementsAre("codesign --force --sign - */Contents/PlugIns/platforms/libqcocoa.dylib",
                            "codesign --force --sign - */Contents/Frameworks/QtCore.framework",
                            "codesign --force --sign - *",
                            "codesign --verify --deep --strict --verbose=2 *"));
    EXPECT_THAT(outcome.output, HasSubstr("3 programs and libraries, for macOS 13.0 and later."));
}

TEST_F(FinishBundleTest, aLibraryNamedByAPathOutsideIsBundledWithItsDependencies) {
    binary("MacOS/Corvane", "dep " + (libraries_ / "libicuuc.77.dylib").string() +
                                "\nrpath @executable_path/../Frameworks\nminos 13.0\n");
    write(libraries_ / "libicuuc.77.dylib",
          "id " + (libraries_ / "libicuuc.77.dylib").string() +
              "\ndep @loader_path/libicudata.77.dylib\ndep /usr/lib/libc++.1.dylib\nminos 13.0\n");
    write(libraries_ / "libicudata.77.dylib",
          "id " + (libraries_ / "libicudata.77.dylib").string() + "\nminos 13.0\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(content("MacOS/Corvane"),
                HasSubstr("dep @executable_path/../Frameworks/libicuuc.77.dylib\n"));
    EXPECT_THAT(content("Frameworks/libicuuc.77.dylib"),
                HasSubstr("id @executable_path/../Frameworks/libicuuc.77.dylib\n"));
    EXPECT_THAT(content("Frameworks/libicudata.77.dylib"),
                HasSubstr("id @executable_path/../Frameworks/libicudata.77.dylib\n"));
    EXPECT_THAT(calls("codesign"),
                Contains("codesign --force --sign - */Contents/Frameworks/libicuuc.77.dylib"));
    EXPECT_THAT(calls("codesign"),
                Contains("codesign --force --sign - */Contents/Frameworks/libicudata.77.dylib"));
}

TEST_F(FinishBundleTest, aLibraryNamedBySearchPathIsSearchedForInTheGivenFolders) {
    binary("PlugIns/platforms/libqcocoa.dylib",
           "id @rpath/libqcocoa.dylib\ndep @rpath/libsimdjson.25.dylib\n");
    write(libraries_ / "libsimdjson.25.dylib", "id @rpath/libsimdjson.25.dylib\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_TRUE(fs::exists(contents_ / "Frameworks/libsimdjson.25.dylib"));
    EXPECT_THAT(content("PlugIns/platforms/libqcocoa.dylib"), HasSubstr("id @rpath/libqcocoa.dylib\n"));
}

TEST_F(FinishBundleTest, aMissingLibraryEndsItBeforeAnythingIsSigned) {
    binary("MacOS/Corvane", "dep @rpath/libmissing.dylib\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("needs @rpath/libmissing.dylib, which is neither in the bundle nor in: "));
    EXPECT_THAT(calls("codesign"), IsEmpty());
}

TEST_F(FinishBundleTest, aFrameworkThatAUsedPluginLacksEndsIt) {
    binary("PlugIns/imageformats/libqsvg.dylib", "dep @rpath/QtSvg.framework/Versions/A/QtSvg\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output,
                HasSubstr("needs @rpath/QtSvg.framework/Versions/A/QtSvg, which Qt's deployment"));
}

TEST_F(FinishBundleTest, onlyThePluginsThatTheProgramUsesAreKept) {
    const std::string svg = "dep @rpath/QtSvg.framework/Versions/A/QtSvg\n";
    binary("Frameworks/QtSvg.framework/Versions/A/QtSvg", "dep @rpath/QtCore.framework/Versions/A/QtCore\n");
    binary("PlugIns/styles/libqmacstyle.dylib", "dep @rpath/QtCore.framework/Versions/A/QtCore\n");
    binary("PlugIns/imageformats/libqsvg.dylib", svg);
    binary("PlugIns/iconengines/libqsvgicon.dylib", svg);
    // As with Homebrew's whole Qt: the frameworks of the first two are there, that of the third is not.
    binary("PlugIns/platforms/libqminimal.dylib", "dep @rpath/QtCore.framework/Versions/A/QtCore\n");
    binary("PlugIns/platforminputcontexts/libqtvirtualkeyboardplugin.dylib",
           "dep @rpath/QtVirtualKeyboard.framework/Versions/A/QtVirtualKeyboard\n");
    binary("PlugIns/imageformats/libqpdf.dylib", "dep @rpath/QtPdf.framework/Versions/A/QtPdf\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    std::vector<std::string> kept;
    for (const auto& entry : fs::recursive_directory_iterator(contents_ / "PlugIns"))
        kept.push_back(fs::relative(entry.path(), contents_ / "PlugIns").string());
    EXPECT_THAT(kept, UnorderedElementsAre("platforms", "platforms/libqcocoa.dylib", "styles",
                                           "styles/libqmacstyle.dylib", "imageformats",
                                           "imageformats/libqsvg.dylib", "iconengines",
                                           "iconengines/libqsvgicon.dylib"));
    EXPECT_THAT(outcome.output, HasSubstr("7 programs and libraries"));
}

TEST_F(FinishBundleTest, frameworksThatOnlyRemovedPluginsNeedAreRemoved) {
    binary("PlugIns/platforminputcontexts/libqtvirtualkeyboardplugin.dylib",
           "dep @rpath/QtVirtualKeyboard.framework/Versions/A/QtVirtualKeyboard\n");
    binary("Frameworks/QtVirtualKeyboard.framework/Versions/A/QtVirtualKeyboard",
           "id @rpath/QtVirtualKeyboard.framework/Versions/A/QtVirtualKeyboard\n"
           "dep @rpath/QtQml.framework/Versions/A/QtQml\n");
    // What it depends on was left out.
    binary("Frameworks/QtQml.framework/Versions/A/QtQml",
           "dep @rpath/QtNetwork.framework/Versions/A/QtNetwork\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_FALSE(fs::exists(contents_ / "Frameworks/QtVirtualKeyboard.framework"));
    EXPECT_FALSE(fs::exists(contents_ / "Frameworks/QtQml.framework"));
    EXPECT_TRUE(fs::exists(contents_ / "Frameworks/QtCore.framework"));
}

TEST_F(FinishBundleTest, searchPathsThatLeadOutsideAreRemovedBeforeSigning) {
    binary("MacOS/Corvane", "dep @rpath/QtCore.framework/Versions/A/QtCore\nrpath /opt/homebrew/lib\n"
                            "rpath /usr/lib/swift\nrpath @loader_path/../Frameworks\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(content("MacOS/Corvane"), Not(HasSubstr("/opt/homebrew")));
    EXPECT_THAT(content("MacOS/Corvane"), HasSubstr("rpath /usr/lib/swift\n"));
    EXPECT_THAT(content("MacOS/Corvane"), HasSubstr("rpath @executable_path/../Frameworks\n"));
    const std::vector<std::string> all = calls("");
    const auto firstSignature =
        std::find_if(all.begin(), all.end(), [](const auto& call) { return call.starts_with("codesign"); });
    EXPECT_TRUE(std::none_of(firstSignature, all.end(), [](const auto& call) {
        return !call.starts_with("codesign");
    })) << "changed after the first signature";
}

TEST_F(FinishBundleTest, theBundleRequiresTheSystemOfItsMostDemandingLibrary) {
    binary("Frameworks/libnew.dylib", "id @rpath/libnew.dylib\nminos 15.0\n");
    binary("Frameworks/libold.dylib", "id @rpath/libold.dylib\nminos 9.4\n");
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 0) << outcome.output;
    EXPECT_THAT(content("Info.plist"),
                HasSubstr("<key>LSMinimumSystemVersion</key>\n    <string>15.0</string>"));
    EXPECT_THAT(outcome.output, HasSubstr("need macOS 15.0; it asks for that rather than for 13.0."));
}

TEST_F(FinishBundleTest, aProgramInsideAFrameworkIsSignedBeforeTheFramework) {
    binary("Frameworks/QtCore.framework/Versions/A/Helpers/helper", "minos 13.0\n");
    EXPECT_EQ(finish().status, 0);
    const std::vector<std::string> signatures = calls("codesign");
    ASSERT_EQ(signatures.size(), 5U);
    EXPECT_EQ(signatures[0],
              "codesign --force --sign - */Contents/Frameworks/QtCore.framework/Versions/A/Helpers/helper");
}

TEST_F(FinishBundleTest, aSecondRunChangesNothing) {
    binary("MacOS/Corvane", "dep @rpath/libsimdjson.25.dylib\nrpath /opt/homebrew/lib\nminos 14.0\n");
    write(libraries_ / "libsimdjson.25.dylib", "id /opt/homebrew/lib/libsimdjson.25.dylib\n");
    EXPECT_EQ(finish().status, 0);
    fs::remove(log_);
    EXPECT_EQ(finish().status, 0);
    EXPECT_THAT(calls("install_name_tool"), IsEmpty());
    EXPECT_THAT(calls("plutil"), IsEmpty());
}

TEST_F(FinishBundleTest, aSignatureThatFailsOrDoesNotHoldEndsIt) {
    EXPECT_NE(finish("QtCore.framework").status, 0);
    EXPECT_THAT(calls("codesign"), Not(Contains("codesign --force --sign - *")));
    EXPECT_NE(finish("--verify").status, 0);
}

TEST_F(FinishBundleTest, anythingButABundleIsRefused) {
    fs::remove(contents_ / "MacOS/Corvane");
    EXPECT_THAT(finish().output, HasSubstr("names no program that is there"));
    fs::remove_all(bundle_);
    const test::Outcome outcome = finish();
    EXPECT_EQ(outcome.status, 1);
    EXPECT_THAT(outcome.output, HasSubstr("is no application bundle"));
}

} // namespace
} // namespace corvane
