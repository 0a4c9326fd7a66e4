#include "properties/panorama_properties_model.h"

#include <algorithm>
#include <cctype>
#include <cmath>

#include "image/jpeg_io.h"
#include "image/picture_io.h"

namespace brindle::properties {

namespace {

std::size_t at(int n) { return static_cast<std::size_t>(n - 1); }

std::string& hotspotTargetName(PanoHotspot& h, int n) {
    if (h.ext.extTexts1.upper() < kHotspotsPerPicture) h.ext.extTexts1.resize(kHotspotsPerPicture);
    return h.ext.extTexts1[n];
}

std::string storedTargetName(const PanoHotspot& h, int n) {
    return n <= h.ext.extTexts1.upper() ? h.ext.extTexts1[n] : std::string();
}

std::string& nextName(PanoHotspot& h) { return h.ext.extText[0]; }

std::string extensionOf(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return {};
    std::string e = path.substr(dot + 1);
    for (char& c : e) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return e;
}

}  // namespace

PanoramaModel PanoramaModel::fromElement(const PanoramaElement& element) {
    PanoramaModel m;
    int n = 0;
    if (element.hotspotCount > 0) n = std::min<int>(element.hotspotCount + 1, kMaxPanoramaPictures);
    else if (!element.hotspots[0].urlName.empty()) n = 1;
    m.pictures_.assign(element.hotspots.begin(), element.hotspots.begin() + n);
    m.startPicture_ = std::clamp<int>(element.currentHotspot, 0, std::max(n - 1, 0));
    return m;
}

void PanoramaModel::applyTo(PanoramaElement& element) const {
    std::vector<PanoHotspot> set = pictures_;
    // A target named by file follows its picture when the set was reordered.
    auto resolve = [&set](std::int16_t& target, const std::string& name) {
        if (name.empty()) return;
        const int t = target;
        if (t >= 0 && t < static_cast<int>(set.size()) && set[static_cast<std::size_t>(t)].urlName == name) return;
        for (std::size_t i = 0; i < set.size(); ++i)
            if (set[i].urlName == name) target = static_cast<std::int16_t>(i);
    };
    for (PanoHotspot& h : set) {
        for (int n = 1; n <= kHotspotsPerPicture; ++n) resolve(h.target[at(n)], storedTargetName(h, n));
        std::int16_t next = static_cast<std::int16_t>(h.values[1]);
        resolve(next, h.ext.extText[0]);
        if (h.nextTime != 0) h.values[1] = next;
    }
    const int n = count();
    element.hotspotCount = static_cast<std::int16_t>(std::max(n - 1, 0));
    element.currentHotspot = static_cast<std::int16_t>(startPicture_);
    for (int i = 0; i < kMaxPanoramaPictures; ++i)
        element.hotspots[static_cast<std::size_t>(i)] = i < n ? set[static_cast<std::size_t>(i)] : PanoHotspot{};
}

void PanoramaModel::select(int index) {
    if (index >= 0 && index < count()) index_ = index;
}

void PanoramaModel::setStartPicture(int i) {
    if (i >= 0 && i < count()) startPicture_ = i;
}

bool PanoramaModel::addPicture(const std::string& path) {
    if (count() >= kMaxPanoramaPictures) return false;
    PanoHotspot h;
    h.urlName = path;
    h.zoomStart = "Full";
    pictures_.push_back(h);
    index_ = count() - 1;
    return true;
}

void PanoramaModel::removeCurrent() {
    if (count() == 0) return;
    const int gone = index_;
    pictures_.erase(pictures_.begin() + gone);
    // Hotspots that led to the removed picture lead nowhere; later ones move up.
    for (PanoHotspot& h : pictures_) {
        for (int n = 1; n <= kHotspotsPerPicture; ++n) {
            std::int16_t& t = h.target[at(n)];
            if (t == gone && storedTargetName(h, n).empty()) t = 0;
            else if (t > gone) --t;
        }
        if (h.values[1] > gone) --h.values[1];
    }
    if (startPicture_ >= count()) startPicture_ = std::max(count() - 1, 0);
    else if (startPicture_ > gone) --startPicture_;
    index_ = std::clamp(gone, 0, std::max(count() - 1, 0));
}

HotspotBox PanoramaModel::hotspot(int n) const {
    if (count() == 0 || n < 1 || n > kHotspotsPerPicture) return {};
    const PanoHotspot& h = current();
    return {{h.x1[at(n)], h.x2[at(n)], h.y1[at(n)], h.y2[at(n)]}, h.target[at(n)]};
}

void PanoramaModel::setHotspotRect(int n, const PixelRect& r) {
    if (count() == 0 || n < 1 || n > kHotspotsPerPicture) return;
    PanoHotspot& h = current();
    h.x1[at(n)] = static_cast<std::int16_t>(r.x1);
    h.x2[at(n)] = static_cast<std::int16_t>(r.x2);
    h.y1[at(n)] = static_cast<std::int16_t>(r.y1);
    h.y2[at(n)] = static_cast<std::int16_t>(r.y2);
}

void PanoramaModel::setHotspotTarget(int n, int pictureIndex) {
    if (count() == 0 || n < 1 || n > kHotspotsPerPicture || pictureIndex < 0 || pictureIndex >= count()) return;
    PanoHotspot& h = current();
    h.target[at(n)] = static_cast<std::int16_t>(pictureIndex);
    hotspotTargetName(h, n) = picture(pictureIndex).urlName;
}

void PanoramaModel::clearHotspot(int n) {
    if (count() == 0 || n < 1 || n > kHotspotsPerPicture) return;
    setHotspotRect(n, {});
    PanoHotspot& h = current();
    h.target[at(n)] = 0;
    if (!storedTargetName(h, n).empty()) hotspotTargetName(h, n).clear();
}

void PanoramaModel::setStartView(const ViewTransform& view) {
    if (count() == 0) return;
    current().xStart = static_cast<std::int32_t>(std::lround(view.vx));
    current().yStart = static_cast<std::int32_t>(-std::lround(view.vy));
    current().zoomStart = checkZoom(view.scale * 100);
}

ViewTransform PanoramaModel::startView() const {
    if (count() == 0) return {};
    return {static_cast<double>(current().xStart), -static_cast<double>(current().yStart), 1};
}

void PanoramaModel::setZoom(const std::string& zoom) {
    if (count() > 0) current().zoomStart = checkZoom(zoom);
}

void PanoramaModel::setNextPicture(int seconds, int pictureIndex) {
    if (count() == 0) return;
    PanoHotspot& h = current();
    const bool none = pictureIndex < 0 || pictureIndex >= count() || seconds <= 0;
    h.nextTime = none ? 0 : seconds;
    h.values[0] = h.nextTime;
    h.values[1] = none ? 0 : pictureIndex;
    nextName(h) = none ? std::string() : picture(pictureIndex).urlName;
}

int PanoramaModel::nextPicture() const {
    if (count() == 0 || current().nextTime <= 0) return -1;
    return std::clamp(current().values[1], 0, count() - 1);
}

void PanoramaModel::setWraps(bool wraps) {
    if (count() > 0) current().ext.extLong[0] = wraps ? -1 : 0;
}

bool PanoramaModel::wraps() const { return count() > 0 && current().ext.extLong[0] != 0; }

bool panoramaNeedsJpeg(const std::string& path) {
    const std::string e = extensionOf(path);
    return e == "ico" || e == "wmf" || e == "png" || e == "emf";
}

std::string jpegNameFor(const std::string& path) {
    const std::size_t slash = path.find_last_of("/\\");
    const std::size_t dot = path.rfind('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return path + ".jpg";
    return path.substr(0, dot) + ".jpg";
}

JpegConverter imageCoreJpegConverter() {
    return [](const std::string& source, const std::string& target) {
        PictureFile f = LoadPictureFile(source);
        if (!f.picture) return false;
        return SavePictureAsJPG(f.picture, target, 90).ok;
    };
}

int addPanoramaPictures(PanoramaModel& model, const std::vector<std::string>& files, Prompter& prompter,
                        Language lang, const JpegConverter& convert) {
    int added = 0;
    int all = 0;  // kYesToAll or kNoToAll once given
    for (std::string file : files) {
        if (model.count() >= kMaxPanoramaPictures) {
            prompter.message(tr(lang, "Ein Panorama zeigt höchstens 21 Bilder.",
                                "A panorama shows at most 21 pictures."),
                             kButtonsOk | kIconExclamation, "Panorama");
            break;
        }
        if (panoramaNeedsJpeg(file)) {
            int answer = all;
            if (answer == 0) {
                answer = prompter.askYesNoAll(
                    tr(lang,
                       "Der Dateityp wird im Panorama Steuerelement nicht unterstützt! Soll die Datei ins JPEG "
                       "Format umgewandelt werden?",
                       "The file type is not supported by the panorama control! Should the file be converted to "
                       "JPEG format?"),
                    "Panorama");
                if (answer == kYesToAll || answer == kNoToAll) all = answer;
            }
            if (answer == kYes || answer == kYesToAll) {
                const std::string jpeg = jpegNameFor(file);
                if (convert && convert(file, jpeg)) file = jpeg;
                else
                    prompter.message(std::string(tr(lang, "Die Datei konnte nicht umgewandelt werden: ",
                                                    "The file could not be converted: ")) + file,
                                     kButtonsOk | kIconCritical, tr(lang, "Fehler", "Error"));
            }
        }
        if (model.addPicture(file)) ++added;
    }
    return added;
}

}  // namespace brindle::properties
