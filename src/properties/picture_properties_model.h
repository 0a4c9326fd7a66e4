// What the picture dialog (frmFrageBild) edits, without windows: the fields
// of one picture element, read on opening, written on OK as one "ändern"
// step, and the frame copied to the other pictures of the page or of the
// whole album. Cancel is simply not calling ok(): the record stays as it was.
#pragma once

#include <functional>
#include <string>

#include "album/session.h"
#include "editor/page_document.h"
#include "properties/picture_specs.h"
#include "properties/link_targets.h"

namespace brindle::properties {

struct PictureFields {
    std::string path;
    int pictureWidth = 0, pictureHeight = 0;  // of the picture file
    std::string hyperlink;                    // txtHyperlink
    int linkBehaviour = 0;                    // optLinkVerhalten 0, 1, 2
    bool proportional = false;                // ChkProportional
    bool originalSize = false;                // chkOriginalgröße
    std::string angle;                        // txtWinkel as typed
    FrameSettings frame;
    bool frameFromBackground = false;         // chkRahmenAusSeitenHintergrund
    AnimationSettings animation;
    bool allOnThisPage = false;               // chkFürDieseSeite
    bool allOnAllPages = false;               // chkFürAlle

    bool operator==(const PictureFields&) const = default;
};


// txtWinkel takes digits and one leading minus.
bool isAngleText(const std::string& text);
// The angle of the text, within -359..359; empty or "-" is 0.
int angleOf(const std::string& text);

// The pixel size of a picture file, 0 x 0 when it cannot be read.
void pictureFileSize(const std::string& path, int& width, int& height);

class PicturePropertiesModel {
public:
    // The page window of an open page, or nullptr when it has none.
    using DocumentLookup = std::function<editor::PageDocument*(int slot)>;

    // Picture `index` of the page in `slot`.
    PicturePropertiesModel(Session& session, int slot, int index);

    // Reads the fields from the record: the frame's texture is repaired,
    // and a texture that still cannot be loaded is warned about.
    void open(Prompter& prompter);

    PictureFields& fields() { return fields_; }
    const PictureFields& fields() const { return fields_; }
    const PictureElement& record() const;
    Session& session() { return session_; }
    Language language() const { return session_.language(); }

    std::string frameSpec() const { return buildFrameSpec(fields_.frame); }
    std::string animationSpec() const { return buildAnimationSpec(fields_.animation); }

    // A new picture file. Icons and metafiles are offered as JPEG; false
    // when the file is not taken.
    bool choosePicture(const std::string& path, Prompter& prompter);
    // The page background as the frame's texture, or no texture.
    void setFrameFromBackground(bool on);
    // A texture picked by the user.
    void setTexture(const std::string& path);

    // Steps 1 to 6 of OK on a copy of the record (fields, box, sizes).
    void applyTo(PictureElement& picture) const;
    // OK: the picture as one "ändern" step of `document` (the page of this
    // model's slot), then the frame copied as the two boxes ask. Closed pages
    // are read, changed, written back and closed again.
    void ok(editor::PageDocument& document, const DocumentLookup& documents = {});

private:
    void repairTexture(Prompter& prompter);
    // Gives every live picture of `page` the frame; `skip` is left alone.
    // Returns whether a picture changed.
    bool copyFrameOnPage(int slot, editor::PageDocument* document, int skip);
    void copyFrameToClosedPage(int entry);
    void copyFrameToAllPages(const DocumentLookup& documents);
    const char* t(const char* de, const char* en) const { return tr(language(), de, en); }

    Session& session_;
    int slot_;
    int index_;
    PictureFields fields_;
};

}  // namespace brindle::properties
