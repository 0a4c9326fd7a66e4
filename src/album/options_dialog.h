// What OK in the options dialog does, over a plain record of the dialog's
// values, so the GUI only fills the record and tests call it directly.
#pragma once

#include <functional>
#include <string>

#include "album/records.h"

namespace brindle {

class Session;

struct OptionsDialogValues {
    std::string language;  // "deutsch" or "englisch"
    bool liveMove = false;
    bool loadReduced = true;
    bool htmlReduce = true;
    bool fullViewNewWindow = false;
    bool keepAspect = true;
    bool linkToReduced = false;
    int mailJpegQuality = 65;
    int indexJpegQuality = 90;
    int htmlJpegQuality = 90;
    bool openDefaultMail = false;
    std::string mailIgnoreEndings;
    int mailIgnoreSize = 0;
    bool relativeOnlyUnrelated = true;
    std::string relativePath;
    int indexThumbWidth = 100, indexThumbHeight = 100, indexColumns = 5;
    Color menuColor1 = 0xA00000, menuColor2 = 0x00FFFF, menuColor3 = 0xFFFFFF;
    bool memoryAtStart = false;
    bool noStartWindow = false;
    bool insertNameBelow = false;
    int insertGapX = 9, insertGapY = 9;
    int insertWidth = 500, insertHeight = 300;
    int insertRows = 3;
    bool insertOriginalSize = false;
    int insertMaxWidth = 800;
    bool insertInRows = false, insertToMaxWidth = false, insertWrapAsView = true;
    bool gridShow = false, gridUse = false;
    int gridWidth = 0, gridHeight = 0;
};

// The dialog's values as the session holds them now.
OptionsDialogValues currentOptionValues(const Session& session);

struct OptionsDialogEffects {
    // Called when the language changed; every open window switches its texts.
    std::function<void()> switchLanguage;
    // Called per open page slot after the values are taken (link colours, grid).
    std::function<void(int slot)> redrawPage;
};

void applyOptionsDialog(Session& session, const OptionsDialogValues& v, const OptionsDialogEffects& effects = {});

// Numeric boxes take digits, backspace and enter only.
inline bool isNumericKey(int key) { return (key >= '0' && key <= '9') || key == 8 || key == 13; }

}  // namespace brindle
