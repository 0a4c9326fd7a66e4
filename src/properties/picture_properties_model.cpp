#include "properties/picture_properties_model.h"

#include <algorithm>
#include <filesystem>

#include "album/paths.h"
#include "album/path_repair.h"
#include "editor/geometry.h"
#include "image/image_info.h"
#include "image/picture_io.h"

namespace brindle::properties {

namespace fs = std::filesystem;
using editor::ElementRef;
using editor::Kind;

namespace {

std::int16_t i16(int v) { return static_cast<std::int16_t>(std::clamp(v, -32768, 32767)); }

// The shown box's size as the record keeps it: with a drawn frame the frame
// is counted on both sides.
void storeShownSize(PictureElement& p, int frameWidth) {
    p.ext.extText[2] = std::to_string(p.width + 2 * frameWidth);
    p.ext.extText[3] = std::to_string(p.height + 2 * frameWidth);
}

std::string lastThreeLower(const std::string& path) {
    std::string ext = path.size() >= 3 ? path.substr(path.size() - 3) : path;
    for (char& c : ext) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return ext;
}

bool pictureLoads(const std::string& path) {
    if (path.empty() || !fs::is_regular_file(path)) return false;
    CImageInfo info;
    if (info.ReadImageInfo(path) && info.Width > 0) return true;
    return static_cast<bool>(LoadPictureFile(path).picture);
}

}  // namespace

bool isAngleText(const std::string& text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '-' && i == 0) continue;
        if (c < '0' || c > '9') return false;
    }
    return true;
}

int angleOf(const std::string& text) {
    if (!isAngleText(text)) return 0;
    const std::string digits = text.starts_with('-') ? text.substr(1) : text;
    if (digits.empty()) return 0;
    // Only the remainder of a whole turn matters, so long digit runs cannot overflow.
    int v = 0;
    for (char c : digits) v = (v * 10 + (c - '0')) % 360;
    return text.starts_with('-') ? -v : v;
}

void pictureFileSize(const std::string& path, int& width, int& height) {
    width = height = 0;
    if (path.empty() || !fs::is_regular_file(path)) return;
    CImageInfo info;
    if (info.ReadImageInfo(path) && info.Width > 0 && info.Height > 0) {
        width = info.Width;
        height = info.Height;
        return;
    }
    PictureFile file = LoadPictureFile(path);
    if (file.picture) {
        width = file.picture.Width();
        height = file.picture.Height();
    }
}

PicturePropertiesModel::PicturePropertiesModel(Session& session, int slot, int index)
    : session_(session), slot_(slot), index_(index) {}

const PictureElement& PicturePropertiesModel::record() const {
    return const_cast<Session&>(session_).page(slot_).pictures[index_];
}

void PicturePropertiesModel::open(Prompter& prompter) {
    const PictureElement& p = record();
    PictureFields f;
    f.path = p.path;
    pictureFileSize(p.path, f.pictureWidth, f.pictureHeight);
    if (f.pictureWidth == 0) {
        f.pictureWidth = p.pictureWidth;
        f.pictureHeight = p.pictureHeight;
    }
    f.hyperlink = p.hyperlink;
    f.linkBehaviour = std::clamp(p.ext.extLong[4], 0, 2);
    f.proportional = isTrue(static_cast<Bool16>(p.proportional));
    f.originalSize = p.ext.extLong[0] != 0;
    f.angle = std::to_string(p.ext.extLong[5]);
    readFrameSpec(p.ext.extText[0], f.frame);
    readAnimationSpec(p.ext.extText[1], f.animation);
    fields_ = f;
    repairTexture(prompter);
    const std::string& background = session_.page(slot_).background;
    fields_.frameFromBackground = !fields_.frame.texture.empty() && fields_.frame.texture == background;
}

void PicturePropertiesModel::repairTexture(Prompter& prompter) {
    std::string& texture = fields_.frame.texture;
    if (texture.empty()) return;
    const SessionState& s = session_.state();
    // A repair counts only when it leads to a file: a short path can be
    // "repaired" into the program directory itself.
    std::string repaired = texture;
    if (sucheBild(repaired, s.programDirectory, s.album.directory) && fs::is_regular_file(repaired)) {
        texture = repaired;
    } else if (repaired = texture; korrigierePfad(repaired, s.programDirectory) && fs::is_regular_file(repaired)) {
        texture = repaired;
    }
    if (pictureLoads(texture)) return;
    prompter.message(std::string(t("Fehler beim laden des Bildes: ", "Error while loading the picture: ")) + texture +
                         "\r\n" + t("Bitte laden Sie ein neues Bild!", "Please load another picture!"),
                     kIconExclamation, t("Warnung", "Warning"));
}

bool PicturePropertiesModel::choosePicture(const std::string& chosen, Prompter& prompter) {
    if (chosen.empty()) return false;
    std::string path = chosen;
    const std::string type = lastThreeLower(path);
    if (type == "ico" || type == "wmf" || type == "emf") {
        const std::string text =
            std::string(t("Der ausgewählte Dateityp: ", "The selected filetype: ")) + type +
            t(" wird nicht von allen Internetbrowsern unterstützt!", " is not provided at all internet browsers!") +
            "\r\n" + t("Soll dieser Dateityp ins JPEG Format umgewandelt werden?", "Should this filetype transformed to JPEG format?");
        if (prompter.message(text, kButtonsYesNo | kIconQuestion, t("Frage", "Question")) == kYes) {
            const std::string jpeg = fs::path(path).replace_extension(".jpg").string();
            PictureFile file = LoadPictureFile(path);
            if (file.picture && SavePictureFile(file.picture, jpeg, 98)) {
                path = jpeg;
            } else {
                prompter.message(std::string(t("Das Bild konnte nicht umgewandelt werden: ",
                                               "The picture could not be converted: ")) + chosen,
                                 kIconCritical, t("Fehler", "Error"));
            }
        }
    }
    int w = 0, h = 0;
    pictureFileSize(path, w, h);
    fields_.path = path;
    fields_.pictureWidth = w;
    fields_.pictureHeight = h;
    return true;
}

void PicturePropertiesModel::setFrameFromBackground(bool on) {
    fields_.frameFromBackground = on;
    if (on) fields_.frame.texture = session_.page(slot_).background;
    else if (fields_.frame.texture == session_.page(slot_).background) fields_.frame.texture.clear();
}

void PicturePropertiesModel::setTexture(const std::string& path) {
    fields_.frame.texture = path;
    fields_.frameFromBackground = !path.empty() && path == session_.page(slot_).background;
}

void PicturePropertiesModel::applyTo(PictureElement& p) const {
    const PictureFields& f = fields_;
    // The box: the picture keeps its centre when it turns or changes size.
    const editor::Box box{p.left, p.top, p.width, p.height};
    const int oldAngle = editor::normaliseAngle(p.ext.extLong[5]);
    const int newAngle = editor::normaliseAngle(angleOf(f.angle));
    std::array<int, 2> size = oldAngle == 0 ? std::array<int, 2>{box.width, box.height}
                                            : editor::unrotatedSize(box, oldAngle, p.pictureWidth, p.pictureHeight);
    const bool turnedOn = f.originalSize && p.ext.extLong[0] == 0;
    if (turnedOn && f.pictureWidth > 0 && f.pictureHeight > 0) {
        size = {f.pictureWidth, f.pictureHeight};
    } else if (f.path != p.path && f.proportional && f.pictureWidth > 0 && f.pictureHeight > 0) {
        size[1] = std::max(1, size[0] * f.pictureHeight / f.pictureWidth);
    }
    editor::Box next = box;
    if (newAngle == 0 && oldAngle == 0) {
        next.width = size[0];
        next.height = size[1];
    } else if (newAngle != oldAngle || size[0] != box.width || size[1] != box.height) {
        next = editor::calcAutoSizeImage(editor::calcEckPointsImage(box, newAngle, size[0], size[1]), newAngle);
    }
    p.left = i16(next.left);
    p.top = i16(next.top);
    p.width = i16(next.width);
    p.height = i16(next.height);

    p.hyperlink = f.hyperlink;
    p.ext.extLong[4] = std::clamp(f.linkBehaviour, 0, 2);
    FrameSettings frame = f.frame;
    p.ext.extText[0] = buildFrameSpec(frame);
    p.ext.extText[1] = buildAnimationSpec(f.animation);
    p.pictureWidth = i16(f.pictureWidth);
    p.pictureHeight = i16(f.pictureHeight);
    p.proportional = toBool16(f.proportional);
    p.ext.extLong[0] = f.originalSize ? -1 : 0;
    storeShownSize(p, drawnFrameWidth(p.ext.extText[0]));
    p.path = f.path;
    p.ext.extLong[5] = newAngle;
}

bool PicturePropertiesModel::copyFrameOnPage(int slot, editor::PageDocument* document, int skip) {
    PageRecord& page = session_.page(slot);
    const std::string spec = frameSpec();
    const int frameWidth = drawnFrameWidth(spec);
    bool changed = false;
    for (int i = 1; i <= page.pictures.upper(); ++i) {
        PictureElement& p = page.pictures[i];
        if (i == skip || isTrue(p.deleted) || p.ext.extText[0] == spec) continue;
        auto give = [&] {
            p.ext.extText[0] = spec;
            storeShownSize(p, frameWidth);
        };
        if (document) document->changeElement(ElementRef{Kind::Bild, i}, give);
        else give();
        changed = true;
    }
    if (changed) session_.state().pageSlots[slot].modified = kTrue;
    return changed;
}

void PicturePropertiesModel::copyFrameToClosedPage(int entry) {
    AlbumRecord& album = session_.album();
    {
        // A page whose file is gone is left alone: opening it would start it anew.
        const PageEntry& e = album.pages[entry];
        if (e.fileName.empty() ||
            (!dateiVorhanden(e.directory + e.fileName) && !dateiVorhanden(album.directory + e.fileName)))
            return;
    }
    if (!session_.SeiteOeffnen(entry, "", true)) return;
    const int slot = album.pages[entry].slot;
    if (slot <= 0) return;
    if (copyFrameOnPage(slot, nullptr, 0)) {
        const PageEntry& e = album.pages[entry];
        session_.schreibeSeite(e.directory + e.fileName, slot);
    }
    if (PageEditor* editor = session_.editor(slot)) editor->unload();
    session_.seiteGeschlossen(slot);
}

void PicturePropertiesModel::copyFrameToAllPages(const DocumentLookup& documents) {
    AlbumRecord& album = session_.album();
    for (int i = 1; i <= album.pages.upper(); ++i) {
        const int slot = album.pages[i].slot;
        if (slot == slot_) continue;  // done with this page
        if (slot > 0) copyFrameOnPage(slot, documents ? documents(slot) : nullptr, 0);
        else copyFrameToClosedPage(i);
    }
}

void PicturePropertiesModel::ok(editor::PageDocument& document, const DocumentLookup& documents) {
    session_.state().pageSlots[slot_].modified = kTrue;
    document.changeElement(ElementRef{Kind::Bild, index_}, [&] { applyTo(session_.page(slot_).pictures[index_]); });
    if (fields_.allOnThisPage || fields_.allOnAllPages) copyFrameOnPage(slot_, &document, index_);
    if (fields_.allOnAllPages) copyFrameToAllPages(documents);
}

}  // namespace brindle::properties
