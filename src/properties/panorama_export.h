// Cmd_Export: one panorama element as a page of its own in an HTML folder,
// written as the album generation writes panoramas, with its pictures,
// the viewer class and the browser script beside it.
#pragma once

#include <string>

#include "album/session.h"

namespace brindle::properties {

// Writes "Panorama.htm" into `directory` (ending in '/'); returns its path,
// or an empty string when it could not be written (after the message).
std::string exportPanorama(Session& session, const PanoramaElement& element, const std::string& directory);

}  // namespace brindle::properties
