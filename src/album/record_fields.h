// Field lists of the records in file order. One list serves reading,
// writing and the JSON dump, so the three can never disagree.
#pragma once

#include "album/records.h"

namespace brindle {

template <class V>
void visitFields(V& v, FontSpec& f) {
    v("color", f.color);
    v("name", f.name);
    v("size", f.size);
    v("bold", f.bold);
    v("italic", f.italic);
    v("underline", f.underline);
}

// The spare run: 7 x i32, 2 arrays of i32, 7 strings, 2 arrays of strings,
// then FontSpec except in SearchElement. Its fields sit flat in the record.
template <class V>
void visitExt(V& v, ExtBlock& e, bool withFont = true) {
    static const char* const longs[] = {"extLong1", "extLong2", "extLong3", "extLong4",
                                        "extLong5", "extLong6", "extLong7"};
    static const char* const texts[] = {"extText1", "extText2", "extText3", "extText4",
                                        "extText5", "extText6", "extText7"};
    for (int i = 0; i < 7; ++i) v(longs[i], e.extLong[i]);
    v("extLongs1", e.extLongs1);
    v("extLongs2", e.extLongs2);
    for (int i = 0; i < 7; ++i) v(texts[i], e.extText[i]);
    v("extTexts1", e.extTexts1);
    v("extTexts2", e.extTexts2);
    if (withFont) v("extFont", e.extFont);
}

template <class V>
void visitFields(V& v, FileHead& h) {
    v("format", h.format);
    v("contact", h.contact);
}

template <class V>
void visitFields(V& v, PageEntry& p) {
    v("title", p.title);
    v("fileName", p.fileName);
    v("directory", p.directory);
    v("slot", p.slot);
}

template <class V>
void visitFields(V& v, AlbumStyle& s) {
    v("spare1", s.spare1);
    v("spare2", s.spare2);
    v("headingFont", s.headingFont);
    v("textFont", s.textFont);
    v("spareFlag", s.spareFlag);
    v("linkColorsActive", s.linkColorsActive);
    v("linkFont", s.linkFont);
    v("visitedLinkFont", s.visitedLinkFont);
    v("activeLinkFont", s.activeLinkFont);
}

template <class V>
void visitFields(V& v, PageProps& p) {
    v("backButton", p.backButton);
    v("contentsButton", p.contentsButton);
    v("forwardButton", p.forwardButton);
    visitExt(v, p.ext);
}

template <class V>
void visitFields(V& v, PanoHotspot& h) {
    v("urlName", h.urlName);
    v("alternative", h.alternative);
    v("x1", h.x1);  // 114 bytes: 5 x 11 x i16 + i32
    v("x2", h.x2);
    v("y1", h.y1);
    v("y2", h.y2);
    v("target", h.target);
    v("nextTime", h.nextTime);
    v("zoomStart", h.zoomStart);
    v("xStart", h.xStart);  // 44 bytes: 6 x i32 + 20 spare
    v("yStart", h.yStart);
    v("values", h.values);
    v("spare", h.spare);
    visitExt(v, h.ext);
}

template <class V>
void visitBox(V& v, std::int16_t& top, std::int16_t& left, std::int16_t& width, std::int16_t& height) {
    v("top", top);
    v("left", left);
    v("width", width);
    v("height", height);
}

template <class V>
void visitFields(V& v, PanoramaElement& e) {
    visitBox(v, e.top, e.left, e.width, e.height);
    v("deleted", e.deleted);
    v("spare", e.spare);
    v("hotspotCount", e.hotspotCount);
    v("currentHotspot", e.currentHotspot);
    v("hotspots", e.hotspots);
    v("spareFlag", e.spareFlag);
    visitExt(v, e.ext);
}

template <class V>
void visitFields(V& v, PictureElement& e) {
    visitBox(v, e.top, e.left, e.width, e.height);
    v("path", e.path);
    v("deleted", e.deleted);
    v("spare", e.spare);
    v("hyperlink", e.hyperlink);
    v("proportional", e.proportional);
    v("pictureWidth", e.pictureWidth);
    v("pictureHeight", e.pictureHeight);
    visitExt(v, e.ext);
}

template <class V>
void visitFields(V& v, TextElement& e) {
    visitBox(v, e.top, e.left, e.width, e.height);
    v("text", e.text);
    v("deleted", e.deleted);
    v("spare", e.spare);
    v("font", e.font);
    v("hyperlink", e.hyperlink);
    visitExt(v, e.ext);
}

template <class V>
void visitFields(V& v, SearchElement& e) {
    visitBox(v, e.top, e.left, e.width, e.height);
    v("caption", e.caption);
    v("deleted", e.deleted);
    v("spare", e.spare);
    v("font", e.font);
    v("hyperlink", e.hyperlink);
    visitExt(v, e.ext, false);
}

template <class V>
void visitFields(V& v, StackEntry& s) {
    v("index", s.index);
    v("kind", s.kind);
}

// Fields 1 to 7 make the older page layout; 8 to 11 came later.
template <class V>
void visitOlderPageFields(V& v, PageRecord& p) {
    v("background", p.background);
    v("backgroundColor", p.backgroundColor);
    v("props", p.props);
    v("panoramas", p.panoramas);
    v("pictures", p.pictures);
    v("texts", p.texts);
    v("music", p.music);
}

template <class V>
void visitFields(V& v, PageRecord& p) {
    visitOlderPageFields(v, p);
    v("stack", p.stack);
    v("searchBoxes", p.searchBoxes);
    v("title", p.title);
    v("description", p.description);
}

template <class V>
void visitFields(V& v, AlbumRecord& a) {
    v("title", a.title);
    v("pages", a.pages);
    v("pageCount", a.pageCount);
    v("modified", a.modified);
    v("directory", a.directory);
    v("fileName", a.fileName);
    v("style", a.style);
    v("pageDefaults", a.pageDefaults);
    v("coverDefaults", a.coverDefaults);
    v("relativeOnlyUnrelated", a.relativeOnlyUnrelated);
    v("relativePath", a.relativePath);
    v("indexThumbWidth", a.indexThumbWidth);
    v("indexThumbHeight", a.indexThumbHeight);
    v("indexColumns", a.indexColumns);
    v("htmlDirectory", a.htmlDirectory);
    v("insertHeight", a.insertHeight);
    v("insertWidth", a.insertWidth);
    v("insertOriginalSize", a.insertOriginalSize);
    v("insertGapX", a.insertGapX);
    v("insertGapY", a.insertGapY);
    v("insertRows", a.insertRows);
    v("insertWrapAsView", a.insertWrapAsView);
    v("insertNameBelow", a.insertNameBelow);
    v("insertInRows", a.insertInRows);
    v("insertToMaxWidth", a.insertToMaxWidth);
    v("insertMaxWidth", a.insertMaxWidth);
    v("loadReduced", a.loadReduced);
    v("htmlReduce", a.htmlReduce);
    v("fullViewNewWindow", a.fullViewNewWindow);
    v("keepAspect", a.keepAspect);
    v("linkToReduced", a.linkToReduced);
    v("htmlJpegQuality", a.htmlJpegQuality);
    v("mailJpegQuality", a.mailJpegQuality);
    v("openDefaultMail", a.openDefaultMail);
    v("indexJpegQuality", a.indexJpegQuality);
    v("mailIgnoreEndings", a.mailIgnoreEndings);
    v("mailIgnoreSize", a.mailIgnoreSize);
    v("spareText1", a.spareText1);
    v("spareText2", a.spareText2);
    v("mailDirectory", a.mailDirectory);
    v("menuColor1", a.menuColor1);
    v("menuColor2", a.menuColor2);
    v("menuColor3", a.menuColor3);
    v("menuOpenFlags", a.menuOpenFlags);
}

}  // namespace brindle
