// The picture services of a generation run, backed by the image core.
#pragma once

#include "html/html_run.h"

namespace brindle::html {

// Writes web pictures (reduced, framed, prepared for effects, turned) and
// reads picture sizes.
PictureServices defaultPictureServices();

// speichereWebBild: one picture for the web, as the run's writer needs it.
bool speichereWebBild(const WebPicture& p, std::string& error);

}  // namespace brindle::html
