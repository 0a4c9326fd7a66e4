// The machine's options: the binary file "optionen" in the program
// directory, with no head before the record.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "album/dyn_array.h"
#include "album/record_fields.h"
#include "album/records.h"

namespace brindle {

struct OptionsRecord {
    std::int32_t optionsSpare = 0;
    std::array<std::uint8_t, 8> explorerSpare{};
    std::int32_t scrollSmallStep = 200;
    std::int32_t scrollLargeStep = 600;
    std::string lastAlbumDirectory;
    std::string pictureDirectory;
    Bool16 liveMove = kFalse;
    Bool16 startFlagA = kTrue;
    Bool16 startFlagB = kFalse;
    Bool16 backgroundCopy = kFalse;
    Bool16 buttonCopy = kFalse;
    Bool16 memoryAtStart = kFalse;
    Bool16 noStartWindow = kFalse;
    std::int16_t spareShort = 0;
    DynArray<std::int16_t> explorerColumns;  // 20 entries when created
    DynArray<std::int16_t> spareShorts;
    std::int32_t explorerLong1 = 0;
    std::int32_t explorerLong2 = 0;
    std::int32_t explorerLayout = 4;
    std::int32_t explorerView = 0;
    std::int32_t gridWidth = 0;
    std::int32_t gridHeight = 0;
    std::int32_t spareLong = 0;
    DynArray<std::int32_t> spareLongs1;
    DynArray<std::int32_t> spareLongs2;
    std::array<std::string, 3> explorerTexts;  // kept by the picture explorer
    std::string explorerStartMode = "normal";
    std::string spareText;
    std::string lastAlbumPath;
    std::string language;  // "deutsch" or "englisch"
    DynArray<std::string> spareTexts1;
    DynArray<std::string> spareTexts2;
    FontSpec font;
    Bool16 gridUse = kFalse;
    Bool16 gridShow = kFalse;

    bool operator==(const OptionsRecord&) const = default;
};

template <class V>
void visitFields(V& v, OptionsRecord& o) {
    v("optionsSpare", o.optionsSpare);
    v("explorerSpare", o.explorerSpare);
    v("scrollSmallStep", o.scrollSmallStep);
    v("scrollLargeStep", o.scrollLargeStep);
    v("lastAlbumDirectory", o.lastAlbumDirectory);
    v("pictureDirectory", o.pictureDirectory);
    v("liveMove", o.liveMove);
    v("startFlagA", o.startFlagA);
    v("startFlagB", o.startFlagB);
    v("backgroundCopy", o.backgroundCopy);
    v("buttonCopy", o.buttonCopy);
    v("memoryAtStart", o.memoryAtStart);
    v("noStartWindow", o.noStartWindow);
    v("spareShort", o.spareShort);
    v("explorerColumns", o.explorerColumns);
    v("spareShorts", o.spareShorts);
    v("explorerLong1", o.explorerLong1);
    v("explorerLong2", o.explorerLong2);
    v("explorerLayout", o.explorerLayout);
    v("explorerView", o.explorerView);
    v("gridWidth", o.gridWidth);
    v("gridHeight", o.gridHeight);
    v("spareLong", o.spareLong);
    v("spareLongs1", o.spareLongs1);
    v("spareLongs2", o.spareLongs2);
    v("explorerText1", o.explorerTexts[0]);
    v("explorerText2", o.explorerTexts[1]);
    v("explorerText3", o.explorerTexts[2]);
    v("explorerStartMode", o.explorerStartMode);
    v("spareText", o.spareText);
    v("lastAlbumPath", o.lastAlbumPath);
    v("language", o.language);
    v("spareTexts1", o.spareTexts1);
    v("spareTexts2", o.spareTexts2);
    v("font", o.font);
    v("gridUse", o.gridUse);
    v("gridShow", o.gridShow);
}

// The options a start without a readable "optionen" runs on.
OptionsRecord defaultOptions();

}  // namespace brindle
