// Load-time repair of paths that albums carry from other disks, machines
// and versions. Each routine tries a fixed list of candidates in a fixed
// order and takes the first that exists; none of them asks the user.
#pragma once

#include <string>

#include "album/diagnose.h"
#include "album/language.h"
#include "album/records.h"

namespace brindle {

// Where the program was installed in earlier versions: exactly 36
// characters, lower case, without a closing separator.
inline constexpr const char* kFormerInstallPath = "c:\\programme\\brindlesee album studio";

// For the default pictures that come with the program. `path` changes only
// on success. `programDirectory` ends in '/'.
bool korrigierePfad(std::string& path, const std::string& programDirectory, const LogSink& log = {});

// For the pictures of a page; also tries the file name in the album's
// directory. Returns whether `path` names an existing file now.
bool sucheBild(std::string& path, const std::string& programDirectory, const std::string& albumDirectory = {});

// Adopts pages of a moved or copied album that lie beside the album file:
// a page file beside the album wins over the stored folder. Returns the
// message to show (empty for none); the album is marked modified when an
// entry changed.
std::string korrigiereVerschobenesAlbum(AlbumRecord& album, Language lang, const LogSink& log = {});
const char* movedAlbumTitle(Language lang);

}  // namespace brindle
