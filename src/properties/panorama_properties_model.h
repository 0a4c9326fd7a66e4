// What the panorama dialog edits: the set of up to 21 pictures of one
// panorama element, each with nine hotspot rectangles leading to other
// pictures of the set, a start view and zoom, and a picture that follows
// after a time. The dialog keeps working copies of the pictures and writes
// them back to the element on OK only.
//
// Where the fields live in a PanoHotspot (the HTML writer reads the same):
//   hotspot n (1..9): x1, x2, y1, y2 and target (picture index) at index n-1;
//     its target's file name in ext.extTexts1[n]
//   start view: xStart, yStart (upwards: the negative of the picture row at
//     the view's top), zoomStart
//   next picture: nextTime seconds, its index in values[1] and values[0] the
//     seconds again (both reach the browser), its file name in ext.extText1
//   "360": ext.extLong1
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "album/language.h"
#include "album/prompter.h"
#include "album/records.h"
#include "properties/panorama_view_math.h"

namespace brindle::properties {

inline constexpr int kMaxPanoramaPictures = 21;
inline constexpr int kHotspotsPerPicture = 9;

struct HotspotBox {
    PixelRect rect;
    int target = 0;  // index of the picture it leads to
    bool operator==(const HotspotBox&) const = default;
};

class PanoramaModel {
public:
    // The working objects of an element: URL_Count pictures, URL_Index 0.
    static PanoramaModel fromElement(const PanoramaElement& element);
    // Writes the set back; hotspot targets follow their pictures' file names.
    void applyTo(PanoramaElement& element) const;

    int count() const { return static_cast<int>(pictures_.size()); }  // URL_Count
    int index() const { return index_; }                             // URL_Index
    void select(int index);
    PanoHotspot& current() { return pictures_[static_cast<std::size_t>(index_)]; }
    const PanoHotspot& current() const { return pictures_[static_cast<std::size_t>(index_)]; }
    const PanoHotspot& picture(int i) const { return pictures_[static_cast<std::size_t>(i)]; }
    int startPicture() const { return startPicture_; }
    void setStartPicture(int i);  // Cmd_Startbild: the current picture is shown first

    // Adds one picture behind the last; false when the set is full.
    bool addPicture(const std::string& path);
    void removeCurrent();

    // Hotspot n, 1..9, of the current picture.
    HotspotBox hotspot(int n) const;
    void setHotspotRect(int n, const PixelRect& rect);
    void setHotspotTarget(int n, int pictureIndex);
    void clearHotspot(int n);

    void setStartView(const ViewTransform& view);  // cmdDieseAnsicht
    ViewTransform startView() const;               // scale not included
    void setZoom(const std::string& zoom);         // through checkZoom
    void setNextPicture(int seconds, int pictureIndex);  // Txt_Timebild, Cbo_TimeBild; -1 none
    int nextPicture() const;                              // index, -1 for none
    void setWraps(bool wraps);                            // Check360
    bool wraps() const;

private:
    std::vector<PanoHotspot> pictures_;
    int index_ = 0;
    int startPicture_ = 0;
};

// The file types the browser's panorama viewer does not take.
bool panoramaNeedsJpeg(const std::string& path);
std::string jpegNameFor(const std::string& path);

// Turns a picture into a JPEG at `target`; false when it could not.
using JpegConverter = std::function<bool(const std::string& source, const std::string& target)>;
JpegConverter imageCoreJpegConverter();

// CmdSucheDatei with the files chosen: each unsupported type is asked about
// (yes, no, yes to all, no to all) and on yes replaced by its JPEG; the set
// stops at 21 pictures with a message. Returns how many were added.
int addPanoramaPictures(PanoramaModel& model, const std::vector<std::string>& files, Prompter& prompter,
                        Language lang, const JpegConverter& convert);

}  // namespace brindle::properties
