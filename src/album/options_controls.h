// The controls of the options dialog (frmVorlage), listed once: which tab
// and group each stands in, its captions, and the value it edits. The
// dialog builds itself from this list and the tests walk it, so a control
// cannot be shown without being taken on OK, nor taken without being shown.
#pragma once

#include <span>
#include <string>
#include <variant>

#include "album/options_dialog.h"

namespace brindle {

enum class OptionKind {
    Check,   // chk: a Boolean
    Choice,  // opt: one of a group of Booleans, exactly one true
    Number,  // txt: digits only
    Text,    // txt: free text
    Colour,  // PicFontColor: 0x00BBGGRR
};

using OptionField = std::variant<bool OptionsDialogValues::*, int OptionsDialogValues::*,
                                 std::string OptionsDialogValues::*, Color OptionsDialogValues::*>;

struct OptionTab {
    const char* id;
    const char* german;
    const char* english;
};

struct OptionControl {
    const char* control;  // the control's name, as the album flows know it
    OptionKind kind;
    const char* tab;      // OptionTab::id
    const char* group;    // group box within the tab, German and English
    const char* groupEnglish;
    const char* german;   // caption or label, with its access key
    const char* english;
    OptionField field;
    const char* fieldName;  // the record field OK writes (AlbumRecord or OptionsRecord)
    int maximum = 0;        // Number: the largest value taken
};

std::span<const OptionTab> optionTabs();
std::span<const OptionControl> optionControls();
const OptionControl* findOptionControl(const std::string& control);

// Reads and writes one control's value in the dialog's record.
bool optionBool(const OptionsDialogValues& v, const OptionControl& c);
void setOptionBool(OptionsDialogValues& v, const OptionControl& c, bool value);
int optionNumber(const OptionsDialogValues& v, const OptionControl& c);
void setOptionNumber(OptionsDialogValues& v, const OptionControl& c, int value);
std::string optionText(const OptionsDialogValues& v, const OptionControl& c);
void setOptionText(OptionsDialogValues& v, const OptionControl& c, const std::string& value);
Color optionColour(const OptionsDialogValues& v, const OptionControl& c);
void setOptionColour(OptionsDialogValues& v, const OptionControl& c, Color value);

// A number box's text as the value OK takes: empty is 0, too large is the maximum.
int numberFromText(const std::string& text, int maximum);

}  // namespace brindle
