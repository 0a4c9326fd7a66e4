// The commands of brindlesee-cli. Each takes its own arguments (after the
// command word) and returns the exit status.
#pragma once

#include <string>
#include <vector>

namespace brindle::cli {

using Args = std::vector<std::string>;

int info(const Args& args);
int resave(const Args& args);
int newAlbum(const Args& args);
int addPage(const Args& args);
int html(const Args& args);
int pictureIndex(const Args& args);
// The picture index of the album at `albumPath`, saved with the album;
// `answer` (kYes or kNo) answers the question about an existing index.
int runPictureIndex(const std::string& albumPath, bool atBeginning, int answer);
int pages(const Args& args);
int convert(const Args& args);
int imageinfo(const Args& args);
int rotate(const Args& args);
int wizardAlbum(const Args& args);
int redeye(const Args& args);
int design(const Args& args);
int resize(const Args& args);
int split(const Args& args);
// Stitches overlapping pictures into one panorama JPEG.
int pano(const Args& args);
// Fills the explorer's thumbnail cache for a folder.
int thumbs(const Args& args);
// One picture from a scanner, or the list of scanners.
int scan(const Args& args);
// Makes an AVI or MP4 video of pictures of one size.
int video(const Args& args);
// Renders pictures laid out by a print layout (.bsp) to one PDF page.
int printSheet(const Args& args);

// Prints "brindlesee-cli: " and the message on one line to stderr; returns 1.
int fail(const std::string& message);

}  // namespace brindle::cli
