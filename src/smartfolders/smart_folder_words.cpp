#include "smartfolders/smart_folder_words.h"

#include "platform/texts.h"

#include <algorithm>
#include <array>

namespace tessellar {

namespace {

struct WordText {
    const char* word;
    const char* text;
    const char* comment = nullptr; ///< for translators, if the text alone is ambiguous
};

constexpr std::array texts = std::to_array<WordText>({
    // fields
    {"displayName", Texts::noop("Name")},
    {"name", Texts::noop("Name")},
    {"originalName", Texts::noop("Original Name")},
    {"bundleIdentifier", Texts::noop("Bundle Identifier")},
    {"developer", Texts::noop("Developer")},
    {"publisher", Texts::noop("Publisher")},
    {"signingTeamID", Texts::noop("Signing Team ID")},
    {"category", Texts::noop("Category")},
    {"path", Texts::noop("Path")},
    {"applicationLocation", Texts::noop("Location")},
    {"installSource", Texts::noop("Installed From")},
    {"distributionChannel", Texts::noop("Updates Come From")},
    {"platform", Texts::noop("Platform")},
    {"architecture", Texts::noop("Architecture")},
    {"updateStatus", Texts::noop("Update Status")},
    {"permission", Texts::noop("Permission")},
    {"launchCount", Texts::noop("Launch Count")},
    {"version", Texts::noop("Version")},
    {"build", Texts::noop("Build")},
    {"minimumMacOSVersion", Texts::noop("Minimum macOS Version")},
    {"installedDate", Texts::noop("Date Installed")},
    {"firstSeenDate", Texts::noop("Date First Seen")},
    {"lastUsedDate", Texts::noop("Date Last Used")},
    {"isProtected", Texts::noop("Protected")},
    {"isRemovable", Texts::noop("Removable")},
    {"isNestedInsideApplicationBundle", Texts::noop("Inside Another App")},
    {"isNeverUsed", Texts::noop("Never Used")},
    {"hasCustomName", Texts::noop("Custom Name")},
    {"hasCustomIcon", Texts::noop("Custom Icon")},
    // values
    {"applications", Texts::noop("Applications")},
    {"userApplications", Texts::noop("User Applications")},
    {"nestedApplication", Texts::noop("Inside Another App")},
    {"other", Texts::noop("Other")},
    {"system", Texts::noop("System")},
    {"macAppStore", Texts::noop("Mac App Store")},
    {"manual", Texts::noop("Manual")},
    {"homebrew", Texts::noop("Homebrew")},
    {"sparkle", Texts::noop("Sparkle")},
    {"vendor", Texts::noop("Vendor")},
    {"unsupported", Texts::noop("Unsupported")},
    {"macOS", Texts::noop("Mac")},
    {"iOSOnMac", Texts::noop("iPhone or iPad")},
    {"arm64", Texts::noop("Apple silicon (arm64)")},
    {"arm64e", Texts::noop("Apple silicon (arm64e)")},
    {"x86_64", Texts::noop("Intel 64-bit (x86_64)")},
    {"i386", Texts::noop("Intel 32-bit (i386)")},
    {"ppc", Texts::noop("PowerPC (ppc)")},
    {"upToDate", Texts::noop("Up To Date")},
    {"updateAvailable", Texts::noop("Update Available")},
    {"failed", Texts::noop("Failed")},
    {"notChecked", Texts::noop("Not Checked")},
    {"camera", Texts::noop("Camera")},
    {"microphone", Texts::noop("Microphone")},
    {"location", Texts::noop("Location", "where the user is"), "where the user is"},
    {"photos", Texts::noop("Photos")},
    {"contacts", Texts::noop("Contacts")},
    {"calendar", Texts::noop("Calendar")},
    {"reminders", Texts::noop("Reminders")},
    {"bluetooth", Texts::noop("Bluetooth")},
    {"automation", Texts::noop("Automation")},
    {"speech", Texts::noop("Speech")},
    {"mediaLibrary", Texts::noop("Media Library")},
    {"localNetwork", Texts::noop("Local Network")},
    {"documents", Texts::noop("Documents")},
    {"true", Texts::noop("Yes")},
    {"false", Texts::noop("No")},
    {"ascending", Texts::noop("Ascending")},
    {"descending", Texts::noop("Descending")},
    // words within a sentence
    {"all", Texts::noop("all")},
    {"any", Texts::noop("any")},
    {"days", Texts::noop("days")},
    {"weeks", Texts::noop("weeks")},
    {"months", Texts::noop("months")},
    {"isExactly", Texts::noop("is")},
    {"isValue", Texts::noop("is")},
    {"isNot", Texts::noop("is not")},
    {"isAnyOf", Texts::noop("is any of")},
    {"contains", Texts::noop("contains")},
    {"doesNotContain", Texts::noop("does not contain")},
    {"beginsWith", Texts::noop("begins with")},
    {"endsWith", Texts::noop("ends with")},
    {"isEqualTo", Texts::noop("is equal to")},
    {"isAbove", Texts::noop("is above")},
    {"isBelow", Texts::noop("is below")},
    {"isBetween", Texts::noop("is between")},
    {"isBefore", Texts::noop("is before")},
    {"isAfter", Texts::noop("is after")},
    {"isToday", Texts::noop("is today")},
    {"isThisWeek", Texts::noop("is this week")},
    {"isThisMonth", Texts::noop("is this month")},
    {"isThisYear", Texts::noop("is this year")},
    {"isWithinLast", Texts::noop("is within the last")},
    {"isUnknown", Texts::noop("is unknown")},
});

} // namespace

QString smartFolderText(QStringView word) {
    const auto* found = std::ranges::find_if(
        texts, [&](const WordText& text) { return word == QLatin1StringView(text.word); });
    return found == texts.end() ? word.toString() : Texts::tr(found->text, found->comment);
}

} // namespace tessellar
