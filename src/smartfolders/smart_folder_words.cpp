#include "smartfolders/smart_folder_words.h"

#include <array>
#include <utility>

namespace tessellar {

/// Those that would not read well taken apart.
static constexpr std::array texts = std::to_array<std::pair<const char16_t*, const char16_t*>>({
    {u"displayName", u"Name"},
    {u"signingTeamID", u"Signing Team ID"},
    {u"applicationLocation", u"Location"},
    {u"installSource", u"Installed From"},
    {u"distributionChannel", u"Updates Come From"},
    {u"minimumMacOSVersion", u"Minimum macOS Version"},
    {u"installedDate", u"Date Installed"},
    {u"firstSeenDate", u"Date First Seen"},
    {u"lastUsedDate", u"Date Last Used"},
    {u"isProtected", u"Protected"},
    {u"isRemovable", u"Removable"},
    {u"isNestedInsideApplicationBundle", u"Inside Another App"},
    {u"isNeverUsed", u"Never Used"},
    {u"hasCustomName", u"Custom Name"},
    {u"hasCustomIcon", u"Custom Icon"},

    {u"userApplications", u"User Applications"},
    {u"nestedApplication", u"Inside Another App"},
    {u"macOS", u"Mac"},
    {u"iOSOnMac", u"iPhone or iPad"},
    {u"arm64", u"Apple silicon (arm64)"},
    {u"arm64e", u"Apple silicon (arm64e)"},
    {u"x86_64", u"Intel 64-bit (x86_64)"},
    {u"i386", u"Intel 32-bit (i386)"},
    {u"ppc", u"PowerPC (ppc)"},
    {u"true", u"Yes"},
    {u"false", u"No"},

    {u"isExactly", u"is"},
    {u"isValue", u"is"},
    {u"isWithinLast", u"is within the last"},
});

static QString withoutHumps(QStringView word, bool isTitle) {
    for (const auto& [raw, text] : texts)
        if (word == QStringView(raw))
            return QString::fromUtf16(text);
    QString result;
    for (qsizetype i = 0; i < word.size(); ++i) {
        const bool begins = i > 0 && word[i].isUpper() && word[i - 1].isLower();
        if (begins)
            result += u' ';
        result += i == 0 && isTitle    ? word[i].toUpper()
                  : begins && !isTitle ? word[i].toLower()
                                       : word[i];
    }
    return result;
}

QString smartFolderTitle(QStringView word) { return withoutHumps(word, true); }
QString smartFolderPhrase(QStringView word) { return withoutHumps(word, false); }

} // namespace tessellar
