#include "smartfolders/bundle_findings.h"

#include "smartfolders/bundle_tools.h"

#include "smartfolders/rights_notice.h"
#include "tests/support/printers.h"

#include <gtest/gtest.h>

namespace tessellar {
namespace {

using namespace Qt::StringLiterals;
TEST(RightsNotice, NamesWhomItProtects) {
    const std::pair<const char*, const char*> notices[] = {
        {"Copyright © 2009-2017 Ann Déau, Bo Cee. All rights reserved.", "Ann Déau, Bo Cee"},
        {"Copyright © 2000–2023 Pear Inc.\nAll rights reserved.", "Pear Inc"},
        {"COPYRIGHT (C) 2000—23 Pear Inc.\nALLE RECHTE VORBEHALTEN.", "Pear Inc"},
        {"Copyright © 2000–2023 Pear Inc.\n保留一切权利。", "Pear Inc"},
        {"Copyright © 2023 Pear Inc. Tous droits réservés.", "Pear Inc"},
        {"© 2023 Pear, s.r.o. Všechna práva vyhrazena.", "Pear, s.r.o"},
        {"© 2023 Груша. ВСЕ ПРАВА ЗАЩИЩЕНЫ.", "Груша"},
        {"版權所有 © 2023 梨子科技。保留所有權利。", "梨子科技"},
        {"10.14, Copyright © 2000-2018, Pear Inc.", "Pear Inc"},
        {"Pear Inc. © 2001, 2003 - present. All rights reserved", "Pear Inc"},
        {"℗ & © 2020 Cherry™", "Cherry™"},
        {"note — a launcher\n\n© 2026 Mika Doe — BSD OR Zlib", "Mika Doe — BSD OR Zlib"},
        {"(c) 2026 drum-box-9661. All rights reserved. Made with care.",
         "drum-box-9661. Made with care"},
        {"© 2020 1Word 2000 Ltd", "1Word 2000 Ltd"},
        {"Plum", "Plum"},
        {"Copyrighted Goods", "Copyrighted Goods"},
    };
    for (const auto& [notice, publisher] : notices)
        EXPECT_EQ(publisherInNotice(QString::fromUtf8(notice)), QString::fromUtf8(publisher)) << notice;
    for (const char* nobody :
         {"", " \n", "© 2020", "Copyright (c) 2001-2002. All rights reserved.", "—·—"})
        EXPECT_FALSE(publisherInNotice(QString::fromUtf8(nobody))) << nobody;
    // Bounded, whatever it says.
    EXPECT_FALSE(publisherInNotice(u"© "_s.repeated(1'000'000)));
    EXPECT_EQ(publisherInNotice(u"é"_s.repeated(100'000))->size(), 2'000);
}

TEST(Signatures, TheDeveloperIsTheNameInTheAuthority) {
    const auto parsed = [](const QByteArray& lines) {
        return parseSignature("Executable=/Applications/X.app/Contents/MacOS/X\nIdentifier=x\n" +
                              lines);
    };
    const SignatureFindings named{u"Ødegård & Sønn (Norway) AS"_s, u"ABCDE12345"_s};
    EXPECT_EQ(parsed("Authority=Developer ID Application: Ødegård & Sønn (Norway) AS (ABCDE12345)\n"
                     "Authority=Developer ID Certification Authority\nTeamIdentifier=ABCDE12345\n"),
              named);
    const SignatureFindings store{std::nullopt, u"74J34U3R6X"_s};
    EXPECT_EQ(parsed("Authority=Apple Mac OS Application Signing\nTeamIdentifier=74J34U3R6X"), store);
    EXPECT_EQ(parsed("Signature=adhoc\nTeamIdentifier=not set\n"), SignatureFindings());
    EXPECT_EQ(parseSignature("/tmp/x: code object is not signed at all\n"), SignatureFindings());
    const QByteArray endless = QByteArray("x").repeated(50'000);
    const SignatureFindings bounded =
        parsed("Authority=Developer ID Application: " + endless + "\nTeamIdentifier=" + endless);
    EXPECT_EQ(bounded.developer->size(), 500);
    EXPECT_EQ(bounded.teamID->size(), 500);
}

} // namespace
} // namespace tessellar
