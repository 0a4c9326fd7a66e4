// The picture services of a generation run, backed by the image core.
#pragma once

#include "html/html_run.h"

namespace brindle::html {

// Writes web pictures (reduced, framed, prepared for effects, turned) and
// reads picture sizes.
PictureServices defaultPictureServices();

// speichereWebBild: one picture for the web, as the run's writer needs it.
bool speichereWebBild(const WebPicture& p, std::string& error);

// The writer's error for a source picture it could not read, and its test:
// such a picture is told, but nothing in the output folder failed.
std::string unreadableSourceError(const std::string& source);
bool isUnreadableSourceError(const std::string& error);

}  // namespace brindle::html
