// The options dialog's control list against the record fields OK writes.
#include <gtest/gtest.h>

#include <map>
#include <set>
#include <type_traits>

#include "album/options.h"
#include "album/options_controls.h"
#include "support/session_fixture.h"

namespace brindle {
namespace {

// Every integral or string field of a record by its name.
struct FieldReader {
    std::map<std::string, long long> numbers;
    std::map<std::string, std::string> texts;
    template <class T>
    void operator()(const char* name, T& value) {
        if constexpr (std::is_integral_v<T>) numbers[name] = static_cast<long long>(value);
        else if constexpr (std::is_same_v<T, std::string>) texts[name] = value;
    }
};

FieldReader fieldsOf(Session& s) {
    FieldReader r;
    visitFields(r, s.state().album);
    visitFields(r, s.state().options);
    return r;
}

class OptionsControlsTest : public test::SessionTest {};

TEST_F(OptionsControlsTest, EveryControlOfTheDialogIsListedOnceWithItsField) {
    // The controls whose values OK copies, with the field each one writes.
    const std::map<std::string, std::string> expected = {
        {"chkLiveMove", "liveMove"},
        {"chkLadenVerkleinert", "loadReduced"},
        {"chkHTMLverkleinern", "htmlReduce"},
        {"chkVollbildImNeuemFenster", "fullViewNewWindow"},
        {"chkSeitenverhältnis", "keepAspect"},
        {"chkLinkAufVerkleinertesBildHTML", "linkToReduced"},
        {"txtHTMLmailJpegQualität", "mailJpegQuality"},
        {"txtBildindexJpegQualität", "indexJpegQuality"},
        {"txtHTMLjpegQualität", "htmlJpegQuality"},
        {"chkStandardMailöffnen", "openDefaultMail"},
        {"txtHTMLMailDateiIgnorEnd", "mailIgnoreEndings"},
        {"txtHTMLMailDateiIgnorSize", "mailIgnoreSize"},
        {"chkNurDateienOhneRelBezug", "relativeOnlyUnrelated"},
        {"txtRelPfad", "relativePath"},
        {"txtBildindexBreite", "indexThumbWidth"},
        {"txtBildindexHöhe", "indexThumbHeight"},
        {"txtBildIndexSpalten", "indexColumns"},
        {"PicFontColor0", "menuColor1"},
        {"PicFontColor1", "menuColor2"},
        {"PicFontColor2", "menuColor3"},
        {"chkMemoryBeimStart", "memoryAtStart"},
        {"chkStartFensterNichtMehr", "noStartWindow"},
        {"chkBildereinfügenNameunten", "insertNameBelow"},
        {"txtBildereinfügenAbstandX", "insertGapX"},
        {"txtBildereinfügenAbstandY", "insertGapY"},
        {"txtBildereinfügenBildBreite", "insertWidth"},
        {"txtBildereinfügenBildHöhe", "insertHeight"},
        {"txtBildereinfügenReihen", "insertRows"},
        {"chkOriginalgröße", "insertOriginalSize"},
        {"txtBildereinfügenMaxBreite", "insertMaxWidth"},
        {"optBilderEinfügenInReihen", "insertInRows"},
        {"optBilderEinfügenMaxBreite", "insertToMaxWidth"},
        {"optBilderEinfügenWieAnsicht", "insertWrapAsView"},
        {"chkGridShow", "gridShow"},
        {"chkGridUse", "gridUse"},
        {"txtGridBreite", "gridWidth"},
        {"txtGridHöhe", "gridHeight"},
    };
    std::map<std::string, std::string> listed;
    std::set<std::string> tabs;
    for (const OptionTab& t : optionTabs()) tabs.insert(t.id);
    for (const OptionControl& c : optionControls()) {
        SCOPED_TRACE(c.control);
        EXPECT_TRUE(listed.emplace(c.control, c.fieldName).second) << "listed twice";
        EXPECT_TRUE(tabs.count(c.tab));
        EXPECT_EQ(c.kind == OptionKind::Number, c.maximum > 0);
        EXPECT_EQ(findOptionControl(c.control), &c);
    }
    EXPECT_EQ(listed, expected);
    EXPECT_EQ(findOptionControl("chkGibtEsNicht"), nullptr);
}

TEST_F(OptionsControlsTest, OkWritesEachControlIntoItsFieldAndNothingElse) {
    Session& s = start();
    const OptionsDialogValues before = currentOptionValues(s);
    int n = 0;
    for (const OptionControl& c : optionControls()) {
        SCOPED_TRACE(c.control);
        ++n;
        const FieldReader old = fieldsOf(s);
        OptionsDialogValues v = currentOptionValues(s);
        long long stored = 0;
        switch (c.kind) {
            case OptionKind::Check:
            case OptionKind::Choice:
                setOptionBool(v, c, !optionBool(v, c));
                stored = optionBool(v, c) ? (c.fieldName == std::string("insertOriginalSize") ? -1 : 65535) : 0;
                break;
            case OptionKind::Number:
                setOptionNumber(v, c, c.maximum - n);
                stored = c.maximum - n;
                break;
            case OptionKind::Colour:
                setOptionColour(v, c, 0x010203u * static_cast<Color>(n));
                stored = 0x010203LL * n;
                break;
            case OptionKind::Text:
                setOptionText(v, c, "Wert " + std::to_string(n));
                break;
        }
        applyOptionsDialog(s, v);
        const FieldReader now = fieldsOf(s);
        if (c.kind == OptionKind::Text) {
            EXPECT_EQ(now.texts.at(c.fieldName), "Wert " + std::to_string(n));
        } else {
            ASSERT_TRUE(now.numbers.count(c.fieldName));
            EXPECT_EQ(now.numbers.at(c.fieldName), stored);
        }
        // Only this field (and the album's changed flag) moved.
        for (const auto& [name, value] : now.numbers) {
            if (name != c.fieldName && name != "modified") {
                EXPECT_EQ(value, old.numbers.at(name)) << name;
            }
        }
        for (const auto& [name, value] : now.texts) {
            if (name != c.fieldName) {
                EXPECT_EQ(value, old.texts.at(name)) << name;
            }
        }
        EXPECT_EQ(s.album().modified, kTrue);
        // Read back, the dialog shows what was taken.
        const OptionsDialogValues shown = currentOptionValues(s);
        EXPECT_EQ(optionBool(shown, c), optionBool(v, c));
        EXPECT_EQ(optionNumber(shown, c), optionNumber(v, c));
        EXPECT_EQ(optionText(shown, c), optionText(v, c));
        EXPECT_EQ(optionColour(shown, c), optionColour(v, c));
    }
    EXPECT_NE(before.insertGapX, currentOptionValues(s).insertGapX);
}

TEST_F(OptionsControlsTest, NumberBoxesTakeDigitsUpToTheirMaximum) {
    const OptionControl& quality = *findOptionControl("txtHTMLjpegQualität");
    EXPECT_EQ(quality.maximum, 100);
    EXPECT_EQ(numberFromText("", quality.maximum), 0);
    EXPECT_EQ(numberFromText("85", quality.maximum), 85);
    EXPECT_EQ(numberFromText("850", quality.maximum), 100);
    EXPECT_EQ(numberFromText("99999999999999", 32767), 32767);
    OptionsDialogValues v;
    setOptionNumber(v, quality, 250);
    EXPECT_EQ(v.htmlJpegQuality, 100);
    setOptionNumber(v, *findOptionControl("txtBildereinfügenBildBreite"), 40000);
    EXPECT_EQ(v.insertWidth, 32767);  // element boxes are i16
    for (int key : std::initializer_list<int>{'0', '9', 8, 13}) EXPECT_TRUE(isNumericKey(key)) << key;
    for (int key : std::initializer_list<int>{'-', '+', ' ', 'a', '.', ',', 27, 9}) EXPECT_FALSE(isNumericKey(key)) << key;
}

}  // namespace
}  // namespace brindle
