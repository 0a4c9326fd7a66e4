// Names of web pictures: elements that show one source file as different
// prepared pictures (size, frame, animation, turn) each get their own file;
// equal preparations share one.
#pragma once

#include <string>

#include "html/html_run.h"

namespace brindle::html {

// The output name for `picture` (its target is ignored): `wanted` when that
// name is free in this run or already holds the same preparation, else
// `wanted` with "_2", "_3", ... before the extension. With `claim` the name
// is taken for this preparation; `drawn` tells that an equal preparation was
// already written in this run.
std::string webPictureName(HtmlRun& run, const std::string& wanted, const WebPicture& picture, bool claim,
                           bool& drawn);

}  // namespace brindle::html
