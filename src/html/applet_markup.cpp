// Pictures and panoramas: an applet block where an effect needs code in the
// browser, a plain picture otherwise.
#include <cmath>

#include "album/encoding.h"
#include "html/html_text.h"
#include "html/page_html.h"
#include "html/safe_text.h"
#include "html/staging.h"

namespace brindle::html {

namespace {

std::string q(const std::string& s) { return "\"" + s + "\""; }

std::string param(const std::string& name, const std::string& value) {
    return "<PARAM NAME=" + name + " VALUE=" + q(value) + ">";
}

std::string boxStyle(long long top, long long left, long long width, long long height, bool signs) {
    auto n = [&](long long v) { return signs ? zahl(v) : ohneVorzeichen(v); };
    return "<div style=" +
           q("position:absolute; top:" + n(top) + "px; left:" + n(left) + "px; width:" + n(width) +
             "px; height:" + n(height) + "px") +
           ">";
}

std::string appletBlock(const PictureElement& p, const std::string& cls, const std::string& params) {
    return boxStyle(p.top, p.left, p.width, p.height, false) + kEol + "<applet CODE=" + q(cls) + " width=" +
           ohneVorzeichen(static_cast<long long>(p.width)) + " " + "height=" +
           ohneVorzeichen(static_cast<long long>(p.height)) + ">" + kEol + params + kEol + "</applet>" + "</div>" +
           kEol;
}

LinkRequest linkFor(PageBuild& b, const PictureElement& p, int index) {
    LinkRequest l;
    l.link = p.hyperlink;
    l.htmlPath = b.htmlPath;
    l.pageIndex = b.pageIndex;
    l.page = &b.page;
    l.elementIndex = index;
    l.width = p.width;
    l.height = p.height;
    l.pictureWidth = p.pictureWidth;
    l.pictureHeight = p.pictureHeight;
    return l;
}

std::string linkParams(PageBuild& b, const PictureElement& p, int index) {
    if (p.hyperlink.empty()) return {};
    static const char* const kTargets[] = {"_self", "_top", "_blank"};
    const int behaviour = p.ext.extLong[4];
    return param("URL", attributeUrl(loeseLink(b.run, linkFor(b, p, index)))) + kEol +
           param("target", kTargets[behaviour >= 0 && behaviour <= 2 ? behaviour : 0]) + kEol;
}

StageRequest stageFor(PageBuild& b, const PictureElement& p) {
    StageRequest s;
    s.source = p.path;
    s.htmlPath = b.htmlPath;
    s.reduce = isTrue(b.run.album().htmlReduce);
    s.width = p.width;
    s.height = p.height;
    s.pictureWidth = p.pictureWidth;
    s.pictureHeight = p.pictureHeight;
    s.frameSpec = p.ext.extText[0];
    s.animationSpec = p.ext.extText[1];
    return s;
}

std::string effectBlock(PageBuild& b, const PictureElement& p, int index, const std::string& name) {
    const auto frame = specTokens(p.ext.extText[0]), anim = specTokens(p.ext.extText[1]);
    const std::string cls = name == "lake" ? "bslake.class" : name == "pano" ? "bspano.class" : "bsrain.class";
    b.run.copyInstalledFile(cls);
    std::string params = param("speed", anim[1]) + kEol;
    if (name == "snow") params += param("snowmodus", "1") + kEol;
    if (hasFrame(frame)) params += param("rahmenbreite", frame[0]) + kEol;
    if (name == "rain" || name == "snow") {
        const double d = anim[0] == "Snow" ? 1 : 11;
        const double count = numericValue(frame[2]) * p.width * p.height / 1000.0 / d;
        params += param("anzahl", std::to_string(std::llround(std::nearbyint(count)))) + kEol;
    } else if (name == "pano") {
        params += param("anzahl", anim[2]) + kEol;
    }
    params += linkParams(b, p, index);
    params += param("picture", attributeUrl(stelleDateiBereit(b.run, stageFor(b, p))));
    return appletBlock(p, cls, params);
}

std::string plainBlock(PageBuild& b, const PictureElement& p, int index) {
    std::string open, close;
    if (!p.hyperlink.empty()) {
        const int behaviour = p.ext.extLong[4];
        open = "<a href=" + q(attributeUrl(loeseLink(b.run, linkFor(b, p, index)))) +
               (behaviour == 1 ? " Target=" + q("_top") : behaviour == 2 ? " Target=" + q("_blank") : "") + ">";
        close = "</a>";
    }
    StageRequest s = stageFor(b, p);
    s.rotation = p.ext.extLong[5];
    s.boxWidth = static_cast<int>(numericValue(p.ext.extText[2]));
    s.boxHeight = static_cast<int>(std::lround(numericValue(p.ext.extText[3])));
    const std::string src = attributeUrl(stelleDateiBereit(b.run, s));
    return boxStyle(p.top, p.left, p.width, p.height, true) + kEol + open + "<p><img src=" + q(src) +
           " width=" + q(zahl(p.width)) + " height=" + q(zahl(p.height)) + " border=0></p>" + close + kEol +
           "</div>" + kEol;
}

}  // namespace

std::string pictureBlock(PageBuild& b, int index) {
    const PictureElement& p = b.page.pictures[index];
    const std::string name = utf8Lower(specTokens(p.ext.extText[1])[0]);
    if (name == "lake" || name == "rain" || name == "snow" || name == "pano") return effectBlock(b, p, index, name);
    return plainBlock(b, p, index);
}

std::string panoramaBlock(PageBuild& b, int index) {
    b.run.copyInstalledFile("pan360.class");
    b.run.copyInstalledFile("alt.gif");  // shown where a panorama picture is missing
    PanoramaElement& pano = b.page.panoramas[index];
    if (isTrue(pano.deleted)) return {};
    std::string params;
    for (int i = 0; i <= pano.hotspotCount && i < 21; ++i) {
        PanoHotspot& h = pano.hotspots[static_cast<std::size_t>(i)];
        const std::string alternative = h.alternative.empty() ? "alt.gif" : attributeUrl(h.alternative);
        StageRequest s;
        s.source = h.urlName;
        s.htmlPath = b.htmlPath;
        s.reduce = isTrue(b.run.album().htmlReduce);
        const std::string picture = attributeUrl(stelleDateiBereit(b.run, s));
        if (h.zoomStart != "Full" && h.zoomStart != "Min") {
            char buf[40];
            std::snprintf(buf, sizeof buf, " %.15g", numericValue(h.zoomStart));
            h.zoomStart = buf;
        }
        std::string v = picture + "," + alternative + "," + zahl(h.xStart) + "," + zahl(-static_cast<long long>(h.yStart)) +
                        "," + h.zoomStart + ",";
        for (std::int32_t value : h.values) v += zahl(value) + ",";
        v += "0,";
        // The five hotspot arrays, index by index; each number loses its sign.
        for (int k = 0; k < 10; ++k)
            for (const auto* column : {&h.x1, &h.x2, &h.y1, &h.y2, &h.target})
                v += ohneVorzeichen(static_cast<long long>((*column)[static_cast<std::size_t>(k)])) + ",";
        params += std::string(kEol) + "<PARAM NAME=URL" + std::to_string(i) + " VALUE=\"" + v + "0,0,0,0,0\">";
    }
    return boxStyle(pano.top, pano.left, pano.width, pano.height, false) + kEol + "<applet CODE=" +
           q("pan360.class") + "width=" + ohneVorzeichen(static_cast<long long>(pano.width)) + " height=" +
           ohneVorzeichen(static_cast<long long>(pano.height)) + ">" + kEol + params + kEol + "</applet>" + "</div>" +
           kEol;
}

}  // namespace brindle::html
