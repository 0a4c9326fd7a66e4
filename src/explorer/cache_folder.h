// Where the thumbnails of a folder are kept: "Thumbnails/" under the
// program directory, in a folder named after the picture folder's path.
#pragma once

#include <string>

namespace brindle::explorer {

// The picture folder's path with every "/" and "\" replaced by "&", and a
// drive letter's colon ("c:") too, so each folder gets a name of its own:
// "c:\bilder\2000" gives "c&&bilder&2000", "/home/u/Bilder/" gives
// "&home&u&Bilder". A closing separator is left out.
std::string thumbnailFolderName(const std::string& pictureFolder);

// programDirectory + "Thumbnails/" + thumbnailFolderName(pictureFolder) + "/".
std::string thumbnailFolder(const std::string& programDirectory, const std::string& pictureFolder);

}  // namespace brindle::explorer
