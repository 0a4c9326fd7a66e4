#include "album/options_dialog.h"

#include "album/session.h"

namespace brindle {

OptionsDialogValues currentOptionValues(const Session& session) {
    const AlbumRecord& a = session.state().album;
    const OptionsRecord& o = session.state().options;
    OptionsDialogValues v;
    v.language = languageName(session.state().language);
    v.liveMove = isTrue(o.liveMove);
    v.loadReduced = isTrue(a.loadReduced);
    v.htmlReduce = isTrue(a.htmlReduce);
    v.fullViewNewWindow = isTrue(a.fullViewNewWindow);
    v.keepAspect = isTrue(a.keepAspect);
    v.linkToReduced = isTrue(a.linkToReduced);
    v.mailJpegQuality = a.mailJpegQuality;
    v.indexJpegQuality = a.indexJpegQuality;
    v.htmlJpegQuality = a.htmlJpegQuality;
    v.openDefaultMail = isTrue(a.openDefaultMail);
    v.mailIgnoreEndings = a.mailIgnoreEndings;
    v.mailIgnoreSize = a.mailIgnoreSize;
    v.relativeOnlyUnrelated = isTrue(a.relativeOnlyUnrelated);
    v.relativePath = a.relativePath;
    v.indexThumbWidth = a.indexThumbWidth;
    v.indexThumbHeight = a.indexThumbHeight;
    v.indexColumns = a.indexColumns;
    v.menuColor1 = a.menuColor1;
    v.menuColor2 = a.menuColor2;
    v.menuColor3 = a.menuColor3;
    v.memoryAtStart = isTrue(o.memoryAtStart);
    v.noStartWindow = isTrue(o.noStartWindow);
    v.insertNameBelow = isTrue(a.insertNameBelow);
    v.insertGapX = a.insertGapX;
    v.insertGapY = a.insertGapY;
    v.insertWidth = a.insertWidth;
    v.insertHeight = a.insertHeight;
    v.insertRows = a.insertRows;
    v.insertOriginalSize = a.insertOriginalSize != 0;
    v.insertMaxWidth = a.insertMaxWidth;
    v.insertInRows = isTrue(a.insertInRows);
    v.insertToMaxWidth = isTrue(a.insertToMaxWidth);
    v.insertWrapAsView = isTrue(a.insertWrapAsView);
    v.gridShow = isTrue(o.gridShow);
    v.gridUse = isTrue(o.gridUse);
    v.gridWidth = o.gridWidth;
    v.gridHeight = o.gridHeight;
    return v;
}

void applyOptionsDialog(Session& session, const OptionsDialogValues& v, const OptionsDialogEffects& effects) {
    SessionState& s = session.state();
    AlbumRecord& a = s.album;
    OptionsRecord& o = s.options;
    const Language wanted = languageFromName(v.language);
    if (wanted != s.language) {
        s.language = wanted;
        o.language = languageName(wanted);
        if (effects.switchLanguage) effects.switchLanguage();
    }
    // Album options count as changed whether or not a value differs.
    a.modified = kTrue;

    o.liveMove = toBool16(v.liveMove);
    a.loadReduced = toBool16(v.loadReduced);
    a.htmlReduce = toBool16(v.htmlReduce);
    a.fullViewNewWindow = toBool16(v.fullViewNewWindow);
    a.keepAspect = toBool16(v.keepAspect);
    a.linkToReduced = toBool16(v.linkToReduced);
    a.mailJpegQuality = v.mailJpegQuality;
    a.indexJpegQuality = v.indexJpegQuality;
    a.htmlJpegQuality = v.htmlJpegQuality;
    a.openDefaultMail = toBool16(v.openDefaultMail);
    a.mailIgnoreEndings = v.mailIgnoreEndings;
    a.mailIgnoreSize = v.mailIgnoreSize;
    a.relativeOnlyUnrelated = toBool16(v.relativeOnlyUnrelated);
    a.relativePath = v.relativePath;
    a.indexThumbWidth = v.indexThumbWidth;
    a.indexThumbHeight = v.indexThumbHeight;
    a.indexColumns = v.indexColumns;
    a.menuColor1 = v.menuColor1;
    a.menuColor2 = v.menuColor2;
    a.menuColor3 = v.menuColor3;
    o.memoryAtStart = toBool16(v.memoryAtStart);
    o.noStartWindow = toBool16(v.noStartWindow);
    a.insertNameBelow = toBool16(v.insertNameBelow);
    a.insertGapX = v.insertGapX;
    a.insertGapY = v.insertGapY;
    a.insertWidth = v.insertWidth;
    a.insertHeight = v.insertHeight;
    a.insertRows = v.insertRows;
    a.insertOriginalSize = v.insertOriginalSize ? -1 : 0;
    a.insertMaxWidth = v.insertMaxWidth;
    a.insertInRows = toBool16(v.insertInRows);
    a.insertToMaxWidth = toBool16(v.insertToMaxWidth);
    a.insertWrapAsView = toBool16(v.insertWrapAsView);
    o.gridShow = toBool16(v.gridShow);
    o.gridUse = toBool16(v.gridUse);
    o.gridWidth = v.gridWidth;
    o.gridHeight = v.gridHeight;

    if (effects.redrawPage)
        for (int slot = 1; slot <= s.pageSlots.upper(); ++slot)
            if (!isTrue(s.pageSlots[slot].free)) effects.redrawPage(slot);
}

}  // namespace brindle
