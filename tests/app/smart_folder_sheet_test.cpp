#include "launcher/smart_folder_library.h"
#include "launcher_fixture.h"

#include "smartfolders/smart_folder_rule.h"

namespace tessellar::test {
namespace {

/// The editor of smart folders, as a user meets it.
class SmartFolderSheetTest : public LauncherFixture {
protected:
    void SetUp() override {
        install({u"Ash"_s, u"Aspen"_s, u"Beech"_s});
        store({{app(u"Ash"_s), app(u"Aspen"_s), app(u"Beech"_s)}});
        start();
    }
    SmartFolderPanel& panel() { return *panels().smartFolder(); }
    const QList<SmartFolderDefinition>& definitions() {
        return viewModel().smartFolders().definitions();
    }
    void openNew() {
        chooseInGrid(u"New Smart Folder…"_s);
        ASSERT_EQ(launcher().sheets()->current(), u"smartFolder");
        layOut();
    }
    void editGames() {
        chooseAt(u"Games"_s, u"Edit Smart Folder…"_s);
        layOut();
    }
    QStringList matches() {
        QStringList names;
        for (const QVariant& match : panel().preview().matches)
            names += match.toMap().value(u"name"_s).toString();
        return names;
    }
    /// What the last rule's value shows, typed or chosen.
    QString value(const char* objectName = "ruleValue") {
        layOut();
        QQuickItem* item = named(QLatin1StringView(objectName));
        if (!item)
            return u"none"_s;
        auto* input = item->property("input").value<QQuickItem*>();
        return (input ? input : item)->property("text").toString();
    }
    bool hasSuggestions() {
        const QVariantList operands = panel().rules().value(0).toMap()[u"operands"_s].toList();
        return operands.value(0).toMap()[u"hasSuggestions"_s].toBool();
    }
    void setRule(const QString& field, const QString& predicate = {}) {
        clickNamed(u"ruleField"_s);
        choose(field);
        if (predicate.isEmpty())
            return;
        clickNamed(u"rulePredicate"_s);
        choose(predicate);
    }
    /// Types over the rule's value.
    void enterValue(const QString& text) {
        clickNamed(u"ruleValue"_s);
        press(Qt::Key_A, Qt::ControlModifier);
        type(text);
    }
};

TEST_F(SmartFolderSheetTest, AFolderIsMadeWithTheKeyboard) {
    openNew();
    EXPECT_EQ(panel().issue(), u"Enter a name.");
    type(u"trees"_s);
    EXPECT_EQ(panel().issue(), u"Complete every rule.");
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().sheets()->current(), u"smartFolder") << "not before it is complete";
    // To the rule, past the symbols, the mode, the field and its condition.
    for (int i = 0;
         i < 40 && !named(u"ruleValue"_s)->property("input").value<QQuickItem*>()->hasActiveFocus();
         ++i)
        press(Qt::Key_Tab);
    press({Qt::Key_Backtab, Qt::Key_Space});
    press({Qt::Key_Down, Qt::Key_Down, Qt::Key_Return});
    layOut();
    EXPECT_TRUE(itemWith("text", u"begins with"_s));
    press(Qt::Key_Tab);
    type(u"as"_s);
    EXPECT_TRUE(QTest::qWaitFor([&] { return matches() == QStringList{u"Ash"_s, u"Aspen"_s}; }));
    EXPECT_EQ(panel().preview().summary, u"2 apps match.");
    press(Qt::Key_Return);
    EXPECT_EQ(launcher().sheets()->current(), QString());
    EXPECT_TRUE(tile(u"trees"_s));
    EXPECT_FALSE(launcher().search()->isActive());
}

TEST_F(SmartFolderSheetTest, AFolderIsChangedWithThePointerOrLeftAsItIs) {
    ASSERT_TRUE(editor().addSmartFolder(mode(), SmartFolderTemplate::games));
    const SmartFolderDefinition before = definitions().first();
    editGames();
    EXPECT_EQ(value(), u"games");
    EXPECT_FALSE(itemWith("text", u"New Smart Folder"_s));
    clickNamed(u"addRule"_s);
    EXPECT_EQ(panel().rules().size(), 2);
    layOut();
    type(u"ch"_s);
    EXPECT_EQ(value(), u"ch") << "the new rule has the keyboard";
    clickNamed(u"matchMode"_s);
    choose(u"any"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return matches() == QStringList{u"Beech"_s}; }));

    // A click beside it loses nothing; Escape means it, but ends a menu first.
    clickAt({20, 780});
    EXPECT_TRUE(panel().isOpen());
    clickNamed(u"sortField"_s);
    press(Qt::Key_Escape);
    EXPECT_TRUE(panel().isOpen());
    press(Qt::Key_Escape);
    ASSERT_TRUE(launcher().alert()->isOpen()) << "nothing is lost unasked";
    EXPECT_EQ(launcher().alert()->title(), u"Discard your changes?");
    press(Qt::Key_Return);
    EXPECT_TRUE(panel().isOpen()) << "nor in haste";
    window->hide();
    window->show();
    EXPECT_TRUE(panel().isOpen());
    press({Qt::Key_Escape, Qt::Key_Tab, Qt::Key_Return});
    EXPECT_FALSE(panel().isOpen());
    EXPECT_EQ(definitions(), QList{before});
    EXPECT_TRUE(view().isVisible());

    editGames();
    clickNamed(u"symbol"_s);
    clickNamed(u"limitSwitch"_s);
    clickNamed(u"removeRule"_s);
    EXPECT_EQ(panel().issue(), u"Add at least one rule.");
    clickNamed(u"firstRule"_s);
    layOut();
    type(u"bee"_s);
    clickNamed(u"smartFolderSave"_s);
    ASSERT_FALSE(panel().isOpen());
    const SmartFolderDefinition after = definitions().first();
    EXPECT_EQ(after.customSymbolName, u"apple.logo");
    EXPECT_EQ(after.resultLimit, 25);
    EXPECT_EQ(std::get<SmartFolderTextRule>(after.rules.first().value()).predicate,
              SmartFolderTextPredicate(predicate::Contains(u"bee"_s)));
}

TEST_F(SmartFolderSheetTest, NumbersAndLimitsHaveStepsAndDaysArePickedFromAMonth) {
    openNew();
    type(u"x"_s);
    setRule(u"Launch Count"_s);
    clickNamed(u"ruleValue"_s);
    const double before = value().toDouble();
    press({Qt::Key_Up, Qt::Key_Up, Qt::Key_Down});
    EXPECT_EQ(value().toDouble(), before + 1);
    QQuickItem* box = named(u"ruleValue"_s);
    clickAt(box->mapToScene(QPointF(box->width() - 9, box->height() / 2 - 6)).toPoint());
    EXPECT_EQ(value().toDouble(), before + 2);
    clickNamed(u"limitSwitch"_s);
    clickNamed(u"limit"_s);
    press(Qt::Key_Down);
    EXPECT_EQ(panel().limitText(), u"24");

    setRule(u"Date Installed"_s, u"is after"_s);
    enterValue(u"2024-2-28"_s);
    press(Qt::Key_Up);
    EXPECT_EQ(value(), u"2/29/2024");
    press(Qt::Key_Down, Qt::AltModifier);
    ASSERT_TRUE(panel().popups()->days()->isOpen());
    layOut();
    EXPECT_EQ(panel().popups()->days()->title(), u"February 2024");
    press({Qt::Key_Right, Qt::Key_Down, Qt::Key_PageDown, Qt::Key_Return});
    EXPECT_FALSE(panel().popups()->days()->isOpen());
    EXPECT_EQ(value(), u"4/8/2024");
    press(Qt::Key_Down, Qt::AltModifier);
    clickNamed(u"monthTurn-1"_s);
    clickNamed(u"day17"_s);
    EXPECT_EQ(value(), u"3/17/2024");
    press(Qt::Key_Down, Qt::AltModifier);
    press(Qt::Key_Escape);
    EXPECT_FALSE(panel().popups()->days()->isOpen());
    EXPECT_TRUE(panel().isOpen());
    type(u"1/2/2025"_s);
    EXPECT_EQ(value(), u"1/2/2025") << "the field has the keyboard again";
    clickNamed(u"smartFolderCancel"_s);
    EXPECT_EQ(launcher().sheets()->current(), QString());
    EXPECT_TRUE(definitions().isEmpty());
}

TEST_F(SmartFolderSheetTest, SeveralAreChosenFromAMenuThatStays) {
    openNew();
    type(u"x"_s);
    setRule(u"Permission"_s, u"is any of"_s);
    EXPECT_EQ(value("ruleChoice"), u"Camera") << "what was chosen before";
    clickNamed(u"ruleChoice"_s);
    choose(u"Photos"_s);
    choose(u"Camera"_s);
    choose(u"Contacts"_s);
    EXPECT_TRUE(panel().popups()->choices()->isOpen());
    press(Qt::Key_Escape);
    EXPECT_EQ(value("ruleChoice"), u"Photos, Contacts");
    // A text is suggested from what applications have, and the field goes on from there.
    setRule(u"Bundle Identifier"_s);
    ASSERT_TRUE(QTest::qWaitFor([&] { return hasSuggestions(); }));
    layOut();
    QQuickItem* field = named(u"ruleValue"_s);
    clickAt(field->mapToScene(QPointF(field->width() - 12, field->height() / 2)).toPoint());
    choose(u"org.example.ash"_s);
    EXPECT_EQ(value(), u"org.example.ash");
    press(Qt::Key_End);
    type(u"x"_s);
    EXPECT_EQ(value(), u"org.example.ashx");
}

} // namespace
} // namespace tessellar::test
